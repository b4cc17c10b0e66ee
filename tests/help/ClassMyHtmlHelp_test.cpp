#include "help/ClassMyHtmlHelp.h"

#include "tests/helpers/RecordedHelp.h"
#include "tests/helpers/ScriptedDialogs.h"

#include <gtest/gtest.h>

namespace ztv {

class ClassMyHtmlHelpTest : public testing::Test {
protected:
    ClassMyHtmlHelpTest() { help_.CHMFile(file_); }

    void ExpectCalls(const std::vector<HelpCall> &calls) { EXPECT_EQ(engine_.Take(), calls); }

    const QString file_ = QStringLiteral("C:\\Program Files\\ZTV Link\\ZTV.chm");
    RecordedHelp engine_;
    ScriptedDialogs dialogs_;
    ClassMyHtmlHelp help_{engine_, dialogs_};
};

TEST_F(ClassMyHtmlHelpTest, KnowsItsCommandsByTheNumbersOfThePlatform) {
    EXPECT_EQ(static_cast<int>(HelpCommand::Context), 15);
    EXPECT_EQ(static_cast<int>(HelpCommand::TextPopup), 14);
    EXPECT_EQ(static_cast<int>(HelpCommand::DisplayTopic), 0);
    EXPECT_EQ(static_cast<int>(HelpCommand::Contents), 1);
    EXPECT_EQ(static_cast<int>(HelpCommand::CloseAll), 18);
}

TEST_F(ClassMyHtmlHelpTest, KeepsTheFilesName) {
    EXPECT_EQ(help_.CHMFile(), file_);
    help_.CHMFile(QString());
    EXPECT_EQ(help_.CHMFile(), QString());
}

TEST_F(ClassMyHtmlHelpTest, ShowsATopicByItsNumber) {
    help_.HHDisplayTopicID(77, 1120);
    ExpectCalls({{77, file_, HelpCommand::Context, 1120}});
    help_.HHDisplayPopUp(78, 0x7FFFFFFF);
    ExpectCalls({{78, file_, HelpCommand::TextPopup, 0x7FFFFFFF}});
}

TEST_F(ClassMyHtmlHelpTest, ShowsATopicByItsAddress) {
    help_.HHDisplayTopicURL(77, QStringLiteral("basic.html"));
    ExpectCalls({{77, file_, HelpCommand::DisplayTopic, QStringLiteral("basic.html")}});
    help_.HHDisplayTopicURL(77, 12); // as text, whatever its type
    ExpectCalls({{77, file_, HelpCommand::DisplayTopic, QStringLiteral("12")}});
}

TEST_F(ClassMyHtmlHelpTest, ShowsTheContents) {
    help_.HHDisplayContents(77);
    ExpectCalls({{77, file_, HelpCommand::Contents, QStringLiteral("0")}});
}

TEST_F(ClassMyHtmlHelpTest, ClosesWhateverIsOpen) {
    help_.HHClose();
    ExpectCalls({{0, QString(), HelpCommand::CloseAll, 0}});
}

TEST_F(ClassMyHtmlHelpTest, WarnsOfAnotherEndOfTheNameAndAsksForTheHelpAllTheSame) {
    for (const char *name : {"ZTV.CHM", "ZTV.Chm", "ZTV.hlp", "hm", ""}) {
        const QString file = QString::fromLatin1(name);
        const QString warning = file + QStringLiteral(" is not a valid HTML Help file.");
        help_.CHMFile(file);
        dialogs_.ExpectNotice(warning);
        help_.HHDisplayContents(1);
        ExpectCalls({{1, file, HelpCommand::Contents, QStringLiteral("0")}});
        dialogs_.ExpectNotice(warning);
        help_.HHDisplayTopicURL(1, QStringLiteral("x.html"));
        ExpectCalls({{1, file, HelpCommand::DisplayTopic, QStringLiteral("x.html")}});
        EXPECT_TRUE(dialogs_.AllCame());
    }
}

TEST_F(ClassMyHtmlHelpTest, LooksAtTheLastThreeCharactersOnly) {
    for (const char *name : {"chm", "xchm"}) {
        help_.CHMFile(QString::fromLatin1(name));
        help_.HHDisplayContents(1);
        EXPECT_EQ(engine_.Take().size(), 1U);
    }
}

TEST_F(ClassMyHtmlHelpTest, ChecksNoNameBeforeATopicsNumber) {
    help_.CHMFile(QStringLiteral("ZTV.CHM"));
    help_.HHDisplayTopicID(1, 2);
    help_.HHDisplayPopUp(1, 2);
    EXPECT_EQ(engine_.Take().size(), 2U);
}

TEST_F(ClassMyHtmlHelpTest, PassesOverAFaultOfClosing) {
    engine_.fault = Fault::Overflow(QStringLiteral("x"));
    EXPECT_NO_THROW(help_.HHClose());
    EXPECT_THROW(help_.HHDisplayTopicID(1, 2), Fault);
}

} // namespace ztv

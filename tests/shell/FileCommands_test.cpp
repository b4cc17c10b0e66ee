#include "shell/FileCommands.h"

#include "model/ClassZentrova.h"
#include "support/Fault.h"
#include "tests/helpers/Printers.h"
#include "tests/helpers/ScriptedDialogs.h"

#include <QStringList>
#include <gtest/gtest.h>

namespace ztv {

// Records each action of a command in order.
class FileCommandsTest : public testing::Test {
protected:
    FileCommandsTest()
        : commands_(
              {.dialogs = dialogs_,
               .changesNeedSaving = [this] { return changed_; },
               .portIsOpen = [this] { return online_; },
               .openFile =
                   [this](const QString &name) {
                       done_ << QStringLiteral("open ") + name;
                       return OpenOutcome{.result = openResult_, .fault = openFault_};
                   },
               .saveFile =
                   [this](const QString &name) {
                       done_ << QStringLiteral("save ") + name;
                       if (saveFaults_) {
                           throw Fault(Fault::Kind::File, QStringLiteral("disk full"));
                       }
                       return saveResult_;
                   },
               .updateCaption = [this] { done_ << QStringLiteral("caption ") + commands_.CurrentFileName(); },
               .showTable = [this] { done_ << QStringLiteral("show"); }}) {}

    // Makes this the current file.
    void HaveOpen(const char *name) {
        dialogs_.ExpectOpenFile(QString::fromLatin1(name));
        commands_.Open();
        done_.clear();
    }

    void ExpectChangesQuestion(const char *text, BoxAnswer answer) {
        dialogs_.Expect(QString::fromLatin1(text), BoxIcon::Question, BoxButtons::YesNoCancel, answer);
    }

    void ExpectOnlineQuestion(BoxAnswer answer) {
        dialogs_.Expect(QStringLiteral("Opening a file when online will load\n"
                                       "the Zentrova with the new settings.\n\nContinue?"),
                        BoxIcon::Exclamation, BoxButtons::YesNo, answer);
    }

    void ExpectSaved() {
        dialogs_.ExpectNotice(QStringLiteral("File saved successfully."), BoxIcon::Information);
    }

    ScriptedDialogs dialogs_;
    bool changed_ = false;
    bool online_ = false;
    bool saveFaults_ = false;
    bool saveResult_ = false;
    FileOpened openResult_ = FileOpened::Whole;
    QString openFault_;
    QStringList done_;
    FileCommands commands_;
};

// Open. ---------------------------------------------------------------------------------------------

TEST_F(FileCommandsTest, OpensTheFileThatIsChosen) {
    dialogs_.ExpectOpenFile(QStringLiteral("/a/b.ztv"), [](const FileQuestion &question) {
        ASSERT_EQ(question.filters.size(), 2U);
        EXPECT_EQ(question.filters[0].caption, QStringLiteral("All Files (*.*)"));
        EXPECT_EQ(question.filters[0].patterns, QStringList{"*"});
        EXPECT_EQ(question.filters[1].caption, QStringLiteral("Zentrova Files (*.ZTV)"));
        EXPECT_TRUE(question.filters[1].patterns.contains(QStringLiteral("*.ztv")));
        EXPECT_EQ(question.preselectedFilter, 1U);
    });
    commands_.Open();
    EXPECT_EQ(commands_.CurrentFileName(), QStringLiteral("/a/b.ztv"));
    EXPECT_EQ(done_, (QStringList{"open /a/b.ztv", "caption /a/b.ztv", "show"}));
}

TEST_F(FileCommandsTest, EndsQuietlyWhenNoFileIsChosen) {
    dialogs_.ExpectOpenFile(std::nullopt);
    commands_.Open();
    EXPECT_EQ(done_, QStringList());
    EXPECT_EQ(commands_.CurrentFileName(), QString());
}

TEST_F(FileCommandsTest, KeepsTheOldNameOfAFileThatWasLoadedInPart) {
    HaveOpen("/a/old.ztv");
    openResult_ = FileOpened::InPart;
    dialogs_.ExpectOpenFile(QStringLiteral("/a/new.ztv"));
    dialogs_.ExpectNotice(QStringLiteral("Not all items were loaded from the file!"));
    commands_.Open();
    EXPECT_EQ(commands_.CurrentFileName(), QStringLiteral("/a/old.ztv"));
    EXPECT_EQ(done_, (QStringList{"open /a/new.ztv", "caption /a/old.ztv", "show"}));
}

TEST_F(FileCommandsTest, HasNoNameForAFileThatWasLoadedInPartWhileNoneWasOpen) {
    openResult_ = FileOpened::InPart;
    dialogs_.ExpectOpenFile(QStringLiteral("/a/new.ztv"));
    dialogs_.ExpectNotice(QStringLiteral("Not all items were loaded from the file!"));
    commands_.Open();
    EXPECT_EQ(commands_.CurrentFileName(), QString());
    EXPECT_EQ(done_, (QStringList{"open /a/new.ztv", "caption ", "show"}));
}

TEST_F(FileCommandsTest, KeepsTheOldNameWhenAFileCannotBeOpened) {
    HaveOpen("/a/old.ztv");
    for (const int code : {2, 3, -1}) {
        openResult_ = static_cast<FileOpened>(code);
        done_.clear();
        dialogs_.ExpectOpenFile(QStringLiteral("/a/new.ztv"));
        dialogs_.ExpectNotice(QStringLiteral("Error opening file!"));
        commands_.Open();
        EXPECT_EQ(commands_.CurrentFileName(), QStringLiteral("/a/old.ztv"));
        EXPECT_EQ(done_, (QStringList{"open /a/new.ztv", "show"}));
    }
}

TEST_F(FileCommandsTest, ShowsTheFaultOfAFileBeforeItsOwnWords) {
    openResult_ = FileOpened::Failed;
    openFault_ = QStringLiteral("/a/new.ztv: it is damaged");
    dialogs_.ExpectOpenFile(QStringLiteral("/a/new.ztv"));
    dialogs_.ExpectNotice(openFault_, BoxIcon::None, QString());
    dialogs_.ExpectNotice(QStringLiteral("Error opening file!"));
    commands_.Open();
    EXPECT_EQ(done_, (QStringList{"open /a/new.ztv", "show"}));
}

TEST_F(FileCommandsTest, AsksAboutChangesBeforeItOpensAnother) {
    HaveOpen("/a/old.ztv");
    changed_ = true;
    const char *question = "Save changes in file /a/old.ztv?";
    ExpectChangesQuestion(question, BoxAnswer::Cancel);
    commands_.Open();
    EXPECT_EQ(done_, QStringList());

    ExpectChangesQuestion(question, BoxAnswer::No);
    dialogs_.ExpectOpenFile(QStringLiteral("/a/new.ztv"));
    commands_.Open();
    EXPECT_EQ(done_, (QStringList{"open /a/new.ztv", "caption /a/new.ztv", "show"}));
    done_.clear();

    ExpectChangesQuestion("Save changes in file /a/new.ztv?", BoxAnswer::Yes);
    ExpectSaved();
    dialogs_.ExpectOpenFile(std::nullopt);
    commands_.Open();
    EXPECT_EQ(done_, (QStringList{"save /a/new.ztv", "caption /a/new.ztv"}));
}

TEST_F(FileCommandsTest, AsksForANameToSaveChangesThatHaveNone) {
    changed_ = true;
    ExpectChangesQuestion("Save changes in file ?", BoxAnswer::Yes);
    dialogs_.ExpectSaveFile(QStringLiteral("/a/first.ztv"));
    ExpectSaved();
    dialogs_.ExpectOpenFile(QStringLiteral("/a/second.ztv"));
    commands_.Open();
    EXPECT_EQ(done_, (QStringList{"save /a/first.ztv", "caption /a/first.ztv", "open /a/second.ztv",
                                  "caption /a/second.ztv", "show"}));
}

TEST_F(FileCommandsTest, WarnsBeforeAnOpenLoadsTheSensor) {
    online_ = true;
    ExpectOnlineQuestion(BoxAnswer::No);
    commands_.Open();
    EXPECT_EQ(done_, QStringList());
    ExpectOnlineQuestion(BoxAnswer::Yes);
    dialogs_.ExpectOpenFile(QStringLiteral("/a/b.ztv"));
    commands_.Open();
    EXPECT_EQ(done_.front(), QStringLiteral("open /a/b.ztv"));
}

TEST_F(FileCommandsTest, AsksAboutChangesFirstAndTheSensorThen) {
    changed_ = true;
    online_ = true;
    ExpectChangesQuestion("Save changes in file ?", BoxAnswer::No);
    ExpectOnlineQuestion(BoxAnswer::Yes);
    dialogs_.ExpectOpenFile(std::nullopt);
    commands_.Open();
}

// Save. ---------------------------------------------------------------------------------------------

TEST_F(FileCommandsTest, AsksForANameOnTheFirstSaveOnly) {
    dialogs_.ExpectSaveFile(QStringLiteral("/a/b.ztv"), [](const FileQuestion &question) {
        EXPECT_EQ(question.preselectedFilter, 1U);
        EXPECT_EQ(question.defaultSuffix, QStringLiteral("ztv"));
        EXPECT_EQ(question.filters[0].requiredSuffix, QString());
        EXPECT_EQ(question.filters[1].requiredSuffix, QStringLiteral("ztv"));
        EXPECT_EQ(question.suggestion, QString());
    });
    ExpectSaved();
    commands_.Save(FileCommands::SaveAs::CurrentName);
    ExpectSaved();
    commands_.Save(FileCommands::SaveAs::CurrentName);
    EXPECT_EQ(done_, (QStringList{"save /a/b.ztv", "caption /a/b.ztv", "save /a/b.ztv", "caption /a/b.ztv"}));
}

TEST_F(FileCommandsTest, AsksForANameOnEachSaveAs) {
    HaveOpen("/a/old.ztv");
    dialogs_.ExpectSaveFile(QStringLiteral("/a/new.ztv"), [](const FileQuestion &question) {
        EXPECT_EQ(question.suggestion, QStringLiteral("/a/old.ztv"));
    });
    ExpectSaved();
    commands_.Save(FileCommands::SaveAs::AskedName);
    EXPECT_EQ(commands_.CurrentFileName(), QStringLiteral("/a/new.ztv"));
    EXPECT_EQ(done_, (QStringList{"save /a/new.ztv", "caption /a/new.ztv"}));
    dialogs_.ExpectSaveFile(std::nullopt);
    commands_.Save(FileCommands::SaveAs::AskedName);
    EXPECT_EQ(commands_.CurrentFileName(), QStringLiteral("/a/new.ztv"));
    EXPECT_EQ(done_.size(), 2);
}

TEST_F(FileCommandsTest, SavesAsThoughNothingChanged) {
    changed_ = false;
    dialogs_.ExpectSaveFile(QStringLiteral("/a/b.ztv"));
    ExpectSaved();
    commands_.Save(FileCommands::SaveAs::AskedName);
    EXPECT_EQ(done_.front(), QStringLiteral("save /a/b.ztv"));
}

TEST_F(FileCommandsTest, KeepsTheNewNameOfASaveThatFails) {
    HaveOpen("/a/old.ztv");
    saveResult_ = true;
    dialogs_.ExpectSaveFile(QStringLiteral("/a/new.ztv"));
    dialogs_.ExpectNotice(QStringLiteral("Error. File not saved!"));
    commands_.Save(FileCommands::SaveAs::AskedName);
    EXPECT_EQ(commands_.CurrentFileName(), QStringLiteral("/a/new.ztv"));
    EXPECT_EQ(done_, QStringList{"save /a/new.ztv"});
}

TEST_F(FileCommandsTest, EndsQuietlyOnAFaultBehindItsDialog) {
    saveFaults_ = true;
    for (const auto which : {FileCommands::SaveAs::CurrentName, FileCommands::SaveAs::AskedName}) {
        FileCommands fresh = commands_;
        dialogs_.ExpectSaveFile(QStringLiteral("/a/new.ztv"));
        EXPECT_NO_THROW(fresh.Save(which));
        EXPECT_EQ(fresh.CurrentFileName(), QStringLiteral("/a/new.ztv"));
    }
}

TEST_F(FileCommandsTest, LetsAFaultThroughWhereTheNameWasKnown) {
    HaveOpen("/a/old.ztv");
    saveFaults_ = true;
    EXPECT_THROW(commands_.Save(FileCommands::SaveAs::CurrentName), Fault);
}

} // namespace ztv

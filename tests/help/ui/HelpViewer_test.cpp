#include "help/ui/HelpViewer.h"

#include "help/ui/HelpWindow.h"
#include "tests/helpers/Files.h"
#include "tests/helpers/Form.h"
#include "tests/helpers/Printers.h"
#include "tests/helpers/ScriptedDialogs.h"

#include <QApplication>
#include <QTemporaryDir>

namespace ztv {

class HelpViewerTest : public testing::Test {
protected:
    HelpViewerTest() {
        Write("topics.txt", "0 | 10 | one.html | word\n0 | 20 | two.html | word\n0 | 30 | three.html |\n");
        for (const char *page : {"one.html", "two.html", "three.html"}) {
            Write(page, QByteArray("<title>") + page + "</title>");
        }
    }

    void Write(const char *name, const QByteArray &content) {
        WriteFile(folder_.filePath(QStringLiteral("help/") + QString::fromLatin1(name)), content);
    }
    void Ask(HelpCommand command, const HelpData &data, WindowHandle caller = 0) {
        viewer_.HtmlHelp(caller, folder_.filePath(QStringLiteral("ZTV.chm")), command, data);
    }
    static HelpWindow *Window() {
        for (QWidget *window : QApplication::topLevelWidgets()) {
            if (auto *help = qobject_cast<HelpWindow *>(window)) {
                return help;
            }
        }
        return nullptr;
    }
    static QString Shown() { return Window() == nullptr ? QString() : Window()->Topic()->file; }

    QTemporaryDir folder_;
    ScriptedDialogs dialogs_;
    HelpViewer viewer_{dialogs_, [](const QUrl &) { return false; }};
};

TEST_F(HelpViewerTest, ShowsATopicByItsNumber) {
    Ask(HelpCommand::Context, 20);
    EXPECT_EQ(Shown(), QStringLiteral("two.html"));
    EXPECT_TRUE(Window()->isVisible());
    Ask(HelpCommand::TextPopup, 30);
    EXPECT_EQ(Shown(), QStringLiteral("three.html"));
}

TEST_F(HelpViewerTest, ShowsATopicByItsAddress) {
    for (const char *address : {"two.html", "ZTV.chm::/two.html", "/two.html#place"}) {
        Ask(HelpCommand::Context, 10);
        Ask(HelpCommand::DisplayTopic, QString::fromLatin1(address));
        EXPECT_EQ(Shown(), QStringLiteral("two.html")) << address;
    }
}

TEST_F(HelpViewerTest, ShowsTheFirstTopicForOneThatIsNotThere) {
    Ask(HelpCommand::Context, 20);
    Ask(HelpCommand::Context, 99);
    EXPECT_EQ(Shown(), QStringLiteral("one.html"));
    Ask(HelpCommand::DisplayTopic, QStringLiteral("gone.html"));
    EXPECT_EQ(Shown(), QStringLiteral("one.html"));
}

TEST_F(HelpViewerTest, OpensTheContentsAtTheTopicOfTheFormThatAsks) {
    QWidget form;
    Ask(HelpCommand::Contents, QStringLiteral("0"), form.winId());
    EXPECT_EQ(Shown(), QStringLiteral("one.html"));
    form.setProperty("HelpContextID", 30);
    Form(*Window()).Get<QTabWidget>("Lists").setCurrentIndex(2);
    Ask(HelpCommand::Contents, QStringLiteral("0"), form.winId());
    EXPECT_EQ(Shown(), QStringLiteral("three.html"));
    EXPECT_EQ(Form(*Window()).Get<QTabWidget>("Lists").currentIndex(), 0);
    Ask(HelpCommand::Contents, QStringLiteral("0"), 0);
    EXPECT_EQ(Shown(), QStringLiteral("one.html"));
}

TEST_F(HelpViewerTest, KeepsItsWindowUntilAllIsToBeClosed) {
    Ask(HelpCommand::Context, 20);
    const HelpWindow *window = Window();
    Window()->close();
    Ask(HelpCommand::Context, 30);
    EXPECT_EQ(Window(), window);
    viewer_.HtmlHelp(0, QString(), HelpCommand::CloseAll, 0);
    EXPECT_EQ(Window(), nullptr);
    viewer_.HtmlHelp(0, QString(), HelpCommand::CloseAll, 0);
    Ask(HelpCommand::Context, 30);
    EXPECT_EQ(Shown(), QStringLiteral("three.html"));
}

TEST_F(HelpViewerTest, TellsWhatIsWrongWithTheHelpAndLooksAgainTheNextTime) {
    const QString table = folder_.filePath(QStringLiteral("help/topics.txt"));
    const QByteArray good = ReadFile(table);
    QFile::remove(table);
    dialogs_.ExpectNotice(
        QStringLiteral("The help can't be shown.\n%1: No such file or directory").arg(table));
    Ask(HelpCommand::Context, 20);
    EXPECT_EQ(Window(), nullptr);
    EXPECT_TRUE(dialogs_.AllCame());
    WriteFile(table, good);
    Ask(HelpCommand::Context, 20);
    EXPECT_EQ(Shown(), QStringLiteral("two.html"));
}

} // namespace ztv

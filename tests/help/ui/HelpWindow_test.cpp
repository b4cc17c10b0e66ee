#include "help/ui/HelpWindow.h"

#include "tests/helpers/Files.h"
#include "tests/helpers/Form.h"
#include "tests/helpers/Printers.h"
#include "tests/helpers/Wait.h"

#include <QLabel>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTest>
#include <optional>

namespace ztv {

class HelpWindowTest : public testing::Test {
protected:
    HelpWindowTest() {
        Write("topics.txt",
              "0 | 1 | one.html | word; same\n1 | 2 | two.html | same\n0 | 3 | three.html | other\n");
        Write("one.html", "<title>One</title><p>first page</p><a href=\"two.html#deep\">on</a>");
        QByteArray lines;
        for (int line = 0; line < 200; ++line) {
            lines += "<p>line</p>";
        }
        Write("two.html",
              "<title>Two</title><p>second page</p>" + lines + "<a name=\"deep\"></a><p>needle</p>" + lines);
        Write("three.html", "<title>Three needle</title><p>third page</p>");
        window_.emplace(HelpTopics::Read(folder_.path()), [this](const QUrl &url) {
            opened_.append(url.toString());
            return true;
        });
        window_->ShowContents(window_->Topics().All().front());
        EXPECT_TRUE(WaitUntil([this] { return window_->isActiveWindow(); }));
    }

    void Write(const char *name, const QByteArray &content) {
        WriteFile(folder_.filePath(QString::fromLatin1(name)), content);
    }
    Form Ui() { return Form(*window_); }
    HelpPage &Page() { return Ui().Get<HelpPage>("Page"); }
    QString Shown() { return Page().toPlainText().left(10); }
    QTabWidget &Lists() { return Ui().Get<QTabWidget>("Lists"); }
    QString Current(const char *list) { return Ui().Get<QTreeWidget>(list).currentItem()->text(0); }
    void Key(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(QApplication::focusWidget(), key, modifiers);
        Settle();
    }
    void Type(const char *text) { QTest::keyClicks(QApplication::focusWidget(), QString::fromLatin1(text)); }
    void Follow(const char *link) {
        Q_EMIT Page().anchorClicked(Page().source().resolved(QUrl(QString::fromLatin1(link))));
    }

    QTemporaryDir folder_;
    QStringList opened_;
    std::optional<HelpWindow> window_;
};

TEST_F(HelpWindowTest, OpensAtTheContentsOfTheTopic) {
    EXPECT_EQ(window_->windowTitle(), QStringLiteral("ZTV Link Help"));
    EXPECT_TRUE(window_->isWindow());
    EXPECT_FALSE(window_->isModal());
    EXPECT_EQ(Shown(), QStringLiteral("first page"));
    EXPECT_EQ(Lists().currentIndex(), 0);
    EXPECT_EQ(Current("Contents"), QStringLiteral("One"));
    auto &contents = Ui().Get<QTreeWidget>("Contents");
    EXPECT_EQ(contents.topLevelItemCount(), 2);
    EXPECT_EQ(contents.topLevelItem(0)->child(0)->text(0), QStringLiteral("Two"));
    EXPECT_TRUE(contents.topLevelItem(0)->isExpanded());
}

TEST_F(HelpWindowTest, ShowsWhatIsChosenInTheContents) {
    Key(Qt::Key_Down);
    EXPECT_EQ(window_->Topic()->file, QStringLiteral("two.html"));
    EXPECT_EQ(Shown(), QStringLiteral("second pag"));
    auto &contents = Ui().Get<QTreeWidget>("Contents");
    QTest::mouseClick(contents.viewport(), Qt::LeftButton, {},
                      contents.visualItemRect(contents.topLevelItem(1)).center());
    EXPECT_EQ(Shown(), QStringLiteral("third page"));
}

TEST_F(HelpWindowTest, GoesBackAndForwardAndHome) {
    EXPECT_FALSE(Ui().Enabled("Back"));
    EXPECT_FALSE(Ui().Enabled("Forward"));
    window_->ShowTopic(window_->Topics().All()[2]);
    EXPECT_EQ(Current("Contents"), QStringLiteral("Three needle"));
    Key(Qt::Key_Left, Qt::AltModifier);
    EXPECT_EQ(Shown(), QStringLiteral("first page"));
    EXPECT_EQ(Current("Contents"), QStringLiteral("One"));
    Key(Qt::Key_Right, Qt::AltModifier);
    EXPECT_EQ(Shown(), QStringLiteral("third page"));
    Ui().Choose("Back");
    Ui().Choose("Forward");
    EXPECT_EQ(Shown(), QStringLiteral("third page"));
    Key(Qt::Key_Home, Qt::AltModifier);
    EXPECT_EQ(Shown(), QStringLiteral("first page"));
    EXPECT_EQ(Current("Contents"), QStringLiteral("One"));
}

TEST_F(HelpWindowTest, HasAnIndexThatCanBeNarrowed) {
    Lists().setCurrentIndex(1);
    auto &index = Ui().Get<QTreeWidget>("Index");
    ASSERT_EQ(index.topLevelItemCount(), 3);
    EXPECT_EQ(index.topLevelItem(0)->text(0), QStringLiteral("other"));
    EXPECT_EQ(index.topLevelItem(1)->text(0), QStringLiteral("same"));
    ASSERT_EQ(index.topLevelItem(1)->childCount(), 2);
    EXPECT_EQ(index.topLevelItem(1)->child(1)->text(0), QStringLiteral("Two"));
    index.setCurrentItem(index.topLevelItem(1)); // selecting a word with several topics opens none
    EXPECT_EQ(Shown(), QStringLiteral("first page"));

    Ui().Get<QLineEdit>("IndexBox").setFocus();
    Type("OTH");
    EXPECT_FALSE(index.topLevelItem(0)->isHidden());
    EXPECT_TRUE(index.topLevelItem(1)->isHidden());
    EXPECT_TRUE(index.topLevelItem(2)->isHidden());
    Key(Qt::Key_Return);
    EXPECT_EQ(Shown(), QStringLiteral("third page"));
    Ui().Get<QLineEdit>("IndexBox").setText(QStringLiteral("nothing"));
    Key(Qt::Key_Return);
    EXPECT_EQ(Shown(), QStringLiteral("third page"));
}

TEST_F(HelpWindowTest, SearchesAllTopicsAndMarksWhatItFound) {
    Key(Qt::Key_F, Qt::ControlModifier);
    EXPECT_EQ(Lists().currentIndex(), 2);
    EXPECT_TRUE(Ui().Get<QLineEdit>("SearchBox").hasFocus());
    Type("needle");
    auto &results = Ui().Get<QTreeWidget>("Results");
    ASSERT_EQ(results.topLevelItemCount(), 2);
    EXPECT_EQ(results.topLevelItem(0)->text(0), QStringLiteral("Three needle"));
    EXPECT_EQ(Ui().Text("ResultCount"), QStringLiteral("2 topics"));
    EXPECT_EQ(Shown(), QStringLiteral("first page")); // until one is chosen
    Key(Qt::Key_Return);
    EXPECT_EQ(Shown(), QStringLiteral("third page"));
    results.setFocus();
    Key(Qt::Key_Down);
    EXPECT_EQ(Shown(), QStringLiteral("second pag"));
    ASSERT_EQ(Page().extraSelections().size(), 1);
    EXPECT_EQ(Page().extraSelections().first().cursor.selectedText(), QStringLiteral("needle"));
    EXPECT_GT(Page().verticalScrollBar()->value(), 0);
    Ui().Choose("Home");
    EXPECT_TRUE(Page().extraSelections().isEmpty());
}

TEST_F(HelpWindowTest, ShowsTheFirstPlaceOfAllTheWordsThatItMarks) {
    Key(Qt::Key_F, Qt::ControlModifier);
    Type("needle page"); // the page contains the words in the opposite order
    auto &results = Ui().Get<QTreeWidget>("Results");
    results.setCurrentItem(results.topLevelItem(1));
    ASSERT_EQ(window_->Topic()->file, QStringLiteral("two.html"));
    EXPECT_EQ(Page().extraSelections().size(), 2);
    EXPECT_EQ(Page().textCursor().position(), QStringLiteral("second page").size());
    EXPECT_EQ(Page().verticalScrollBar()->value(), 0);
}

TEST_F(HelpWindowTest, SaysWhenASearchFindsNothing) {
    Ui().Choose("Find");
    Type("needle haystack");
    EXPECT_EQ(Ui().Get<QTreeWidget>("Results").topLevelItemCount(), 0);
    EXPECT_EQ(Ui().Text("ResultCount"), QStringLiteral("No topic has all of these words."));
    Key(Qt::Key_Return);
    EXPECT_EQ(Shown(), QStringLiteral("first page"));
    Ui().Get<QLineEdit>("SearchBox").setText(QStringLiteral("third"));
    EXPECT_EQ(Ui().Text("ResultCount"), QStringLiteral("1 topic"));
    Ui().Get<QLineEdit>("SearchBox").clear();
    EXPECT_EQ(Ui().Text("ResultCount"), QString());
}

TEST_F(HelpWindowTest, FollowsLinksToPagesAndPlacesInThem) {
    Page().setFocus();
    Key(Qt::Key_Tab); // moves to the link
    Key(Qt::Key_Return);
    EXPECT_EQ(window_->Topic()->file, QStringLiteral("two.html"));
    EXPECT_GT(Page().verticalScrollBar()->value(), 0);
    Follow("three.html");
    EXPECT_EQ(Shown(), QStringLiteral("third page"));
    Follow("#nowhere");
    EXPECT_EQ(Shown(), QStringLiteral("third page"));
}

TEST_F(HelpWindowTest, OpensAddressesOnTheWebInTheBrowserAndNothingElse) {
    for (const char *link : {"http://one.example/", "https://two.example/x?y#z"}) {
        Follow(link);
    }
    EXPECT_EQ(opened_, QStringList({QStringLiteral("http://one.example/"),
                                    QStringLiteral("https://two.example/x?y#z")}));
    opened_.clear();
    for (const char *link :
         {"file:///etc/passwd", "ftp://one.example/one.html", "javascript:alert(1)", "mailto:a@one.example",
          "gone.html", "data:text/html,x", "//one.example/two.html"}) {
        Follow(link);
        EXPECT_EQ(Shown(), QStringLiteral("first page")) << link;
    }
    EXPECT_EQ(opened_, QStringList());
}

TEST_F(HelpWindowTest, ReadsWithinItsFolderOnly) {
    const QTemporaryDir elsewhere;
    WriteFile(elsewhere.filePath(QStringLiteral("secret.html")), "secret");
    for (const QUrl &url :
         {QUrl::fromLocalFile(elsewhere.filePath(QStringLiteral("secret.html"))),
          QUrl(QStringLiteral("../") + QFileInfo(elsewhere.path()).fileName() +
               QStringLiteral("/secret.html")),
          QUrl(QStringLiteral("http://one.example/one.html")), QUrl(QStringLiteral("//one.example/one.html")),
          QUrl(QStringLiteral("gone.png"))}) {
        EXPECT_FALSE(Page().loadResource(QTextDocument::ImageResource, url).isValid())
            << qPrintable(url.toString());
    }
    EXPECT_TRUE(Page().loadResource(QTextDocument::HtmlResource, QUrl(QStringLiteral("one.html"))).isValid());
}

TEST_F(HelpWindowTest, ClosesByEscapeAndOpensAgain) {
    Key(Qt::Key_Escape);
    EXPECT_FALSE(window_->isVisible());
    window_->ShowTopic(window_->Topics().All()[1]);
    EXPECT_TRUE(window_->isVisible());
    window_->showMinimized();
    window_->ShowTopic(window_->Topics().All()[1]);
    EXPECT_FALSE(window_->isMinimized());
}

TEST_F(HelpWindowTest, NamesWhatTakesTheFocus) {
    for (QWidget *widget : window_->findChildren<QWidget *>()) {
        if (widget->focusPolicy() == Qt::NoFocus || widget->inherits("QTabWidget") ||
            widget->inherits("QTabBar") || widget->objectName().startsWith(QStringLiteral("qt_"))) {
            continue;
        }
        EXPECT_FALSE(widget->accessibleName().isEmpty())
            << widget->metaObject()->className() << ' ' << widget->objectName().toStdString();
    }
}

TEST_F(HelpWindowTest, DoesNotKeepTheProgramFromEnding) {
    EXPECT_FALSE(window_->testAttribute(Qt::WA_QuitOnClose));
}

} // namespace ztv

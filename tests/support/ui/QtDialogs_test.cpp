#include "support/ui/QtDialogs.h"

#include "tests/support/Form.h"
#include "tests/support/MainForm.h"
#include "tests/support/Printers.h"
#include "tests/support/Wait.h"

#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QFileSystemModel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTreeView>
#include <gtest/gtest.h>

class QtDialogsTest : public testing::Test {
protected:
    QtDialogsTest() {
        for (const char *name : {"a.ztv", "B.ZTV", "c.txt", "none"}) {
            QFile file(folder_.filePath(QString::fromLatin1(name)));
            EXPECT_TRUE(file.open(QFile::WriteOnly));
        }
    }

    FileQuestion Question() const {
        return {.filters = {{.caption = QStringLiteral("All Files (*.*)"), .patterns = {QStringLiteral("*")}},
                            {.caption = QStringLiteral("Zentrova Files (*.ZTV)"),
                             .patterns = {QStringLiteral("*.ztv"), QStringLiteral("*.ZTV")}}},
                .preselectedFilter = 1,
                .suggestion = folder_.path(),
                .defaultSuffix = QStringLiteral("ztv")};
    }

    static void Type(QWidget &dialog, const char *name) {
        auto &box = Form(dialog).Get<QLineEdit>("fileNameEdit");
        box.setText(QString::fromLatin1(name));
        QTest::keyClick(&box, Qt::Key_Return);
    }

    static QStringList ShownNames(QWidget &dialog) {
        auto &view = Form(dialog).Get<QTreeView>("treeView");
        QStringList names;
        EXPECT_TRUE(WaitUntil([&view] { return view.model()->rowCount(view.rootIndex()) >= 2; }));
        for (int row = 0; row < view.model()->rowCount(view.rootIndex()); ++row) {
            names << view.model()->index(row, 0, view.rootIndex()).data().toString();
        }
        names.sort();
        return names;
    }

    QTemporaryDir folder_;
    QtDialogs dialogs_;
};

TEST_F(QtDialogsTest, OffersTheFilesOfThePreselectedFilterInEitherCase) {
    WhenDialogOpens([](QWidget &dialog) {
        auto &filters = Form(dialog).Get<QComboBox>("fileTypeCombo");
        EXPECT_EQ(filters.currentText().trimmed(), QStringLiteral("Zentrova Files (*.ZTV)"));
        EXPECT_EQ(filters.itemText(0).trimmed(), QStringLiteral("All Files (*.*)"));
        EXPECT_EQ(ShownNames(dialog), (QStringList{"B.ZTV", "a.ztv"}));
        QTest::keyClick(&filters, Qt::Key_Up);
        EXPECT_TRUE(WaitUntil([&dialog] { return ShownNames(dialog).size() == 4; }));
        dialog.close();
    });
    EXPECT_EQ(dialogs_.OpenFileDialog(Question()), std::nullopt);
}

TEST_F(QtDialogsTest, OpensOnlyAFileThatIsThere) {
    WhenDialogOpens([](QWidget &dialog) {
        WhenDialogOpens([](QWidget &box) {
            EXPECT_NE(qobject_cast<QMessageBox *>(&box), nullptr);
            box.close();
        });
        Type(dialog, "missing.ztv");
        EXPECT_TRUE(dialog.isVisible());
        Type(dialog, "a.ztv");
    });
    EXPECT_EQ(dialogs_.OpenFileDialog(Question()),
              QDir::toNativeSeparators(folder_.filePath(QStringLiteral("a.ztv"))));
}

TEST_F(QtDialogsTest, OpensAFileWhoseNameHasNoSuffix) {
    WhenDialogOpens([](QWidget &dialog) { Type(dialog, "none"); });
    EXPECT_EQ(dialogs_.OpenFileDialog(Question()),
              QDir::toNativeSeparators(folder_.filePath(QStringLiteral("none"))));
}

TEST_F(QtDialogsTest, GivesANameWithoutASuffixOne) {
    WhenDialogOpens([](QWidget &dialog) { Type(dialog, "left"); });
    EXPECT_EQ(dialogs_.SaveFileDialog(Question()),
              QDir::toNativeSeparators(folder_.filePath(QStringLiteral("left.ztv"))));
}

TEST_F(QtDialogsTest, AsksBeforeAFileIsOverwritten) {
    for (const auto answer : {QMessageBox::No, QMessageBox::Yes}) {
        WhenDialogOpens([answer](QWidget &dialog) {
            WhenDialogOpens(
                [answer](QWidget &box) { dynamic_cast<QMessageBox &>(box).button(answer)->click(); });
            Type(dialog, "a");
            if (answer == QMessageBox::No) {
                EXPECT_TRUE(dialog.isVisible());
                dialog.close();
            }
        });
        EXPECT_EQ(dialogs_.SaveFileDialog(Question()).has_value(), answer == QMessageBox::Yes);
    }
}

TEST_F(QtDialogsTest, SuggestsTheFileThatIsOpen) {
    FileQuestion question = Question();
    question.suggestion = folder_.filePath(QStringLiteral("a.ztv"));
    WhenDialogOpens([](QWidget &dialog) {
        EXPECT_EQ(Form(dialog).Get<QLineEdit>("fileNameEdit").text(), QStringLiteral("a.ztv"));
        dialog.close();
    });
    dialogs_.SaveFileDialog(question);
}

TEST_F(QtDialogsTest, StartsInTheFolderOfTheLastFile) {
    WhenDialogOpens([](QWidget &dialog) { Type(dialog, "a.ztv"); });
    dialogs_.OpenFileDialog(Question());
    FileQuestion question = Question();
    question.suggestion.clear();
    WhenDialogOpens([](QWidget &dialog) {
        EXPECT_EQ(ShownNames(dialog), (QStringList{"B.ZTV", "a.ztv"}));
        dialog.close();
    });
    dialogs_.OpenFileDialog(question);
}

TEST_F(QtDialogsTest, AnswersABoxByItsButton) {
    const std::pair<QMessageBox::StandardButton, BoxAnswer> rows[] = {
        {QMessageBox::Yes, BoxAnswer::Yes},
        {QMessageBox::No, BoxAnswer::No},
        {QMessageBox::Cancel, BoxAnswer::Cancel}};
    for (const auto &[button, answer] : rows) {
        WhenDialogOpens(
            [button = button](QWidget &box) { dynamic_cast<QMessageBox &>(box).button(button)->click(); });
        EXPECT_EQ(
            static_cast<int>(dialogs_.OwnedMessageBox(
                QStringLiteral("<b>?</b>"), {.icon = BoxIcon::Question, .buttons = BoxButtons::YesNoCancel},
                QStringLiteral("ZTV Link"))),
            static_cast<int>(answer));
    }
    WhenDialogOpens([](QWidget &box) { QTest::keyClick(&box, Qt::Key_Escape); });
    EXPECT_EQ(static_cast<int>(dialogs_.OwnedMessageBox(
                  QStringLiteral("?"), {.icon = BoxIcon::Question, .buttons = BoxButtons::YesNoCancel},
                  QStringLiteral("ZTV Link"))),
              static_cast<int>(BoxAnswer::Cancel));
}

TEST_F(QtDialogsTest, TakesTheTitleOfTheQuestion) {
    WhenDialogOpens([](QWidget &dialog) {
        EXPECT_EQ(dialog.windowTitle(), QStringLiteral("Open HEX File"));
        dialog.close();
    });
    FileQuestion question = Question();
    question.title = QStringLiteral("Open HEX File");
    EXPECT_EQ(dialogs_.OpenFileDialog(question), std::nullopt);
}

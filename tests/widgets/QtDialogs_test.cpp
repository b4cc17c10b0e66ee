#include "widgets/QtDialogs.h"

#include "tests/helpers/Form.h"
#include "tests/helpers/MainForm.h"
#include "tests/helpers/Printers.h"
#include "tests/helpers/Wait.h"

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

namespace ztv {

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
                             .patterns = {QStringLiteral("*.ztv"), QStringLiteral("*.ZTV")},
                             .requiredSuffix = QStringLiteral("ztv")}},
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

    BoxAnswer Ask(BoxButtons buttons) {
        return dialogs_.OwnedMessageBox(QStringLiteral("?"), {.icon = BoxIcon::Question, .buttons = buttons},
                                        QStringLiteral("ZTV Link"));
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

TEST_F(QtDialogsTest, GivesEachNameTheSuffixOfItsFilter) {
    const char *rows[][2] = {{"left", "left.ztv"},
                             {"Roll 1.5", "Roll 1.5.ztv"},
                             {"c.txt", "c.txt.ztv"},
                             {"UPPER.ZTV", "UPPER.ZTV"},
                             {"new.ztv", "new.ztv"},
                             {"point.", "point..ztv"},
                             {"roll\\left", "roll\\left.ztv"},
                             {"\"Roll 1.5\"", "Roll 1.5.ztv"},
                             {"Roll 12\"", "Roll 12\".ztv"},
                             {"Roll 12\".ztv", "Roll 12\".ztv"},
                             {"\"", "\".ztv"},
                             {"a\" \"b", "a\" \"b.ztv"}};
    for (const auto &row : rows) {
        WhenDialogOpens([&row](QWidget &dialog) { Type(dialog, row[0]); });
        EXPECT_EQ(dialogs_.SaveFileDialog(Question()), folder_.filePath(QString::fromLatin1(row[1])));
    }
}

TEST_F(QtDialogsTest, TakesANameAsItIsUnderAllFiles) {
    const char *rows[][2] = {{"left", "left.ztv"},
                             {"Roll 1.5", "Roll 1.5"},
                             {"Roll 12\"", "Roll 12\".ztv"},
                             {"Roll 12\".old", "Roll 12\".old"}};
    FileQuestion question = Question();
    question.preselectedFilter = 0;
    for (const auto &row : rows) {
        WhenDialogOpens([&row](QWidget &dialog) { Type(dialog, row[0]); });
        EXPECT_EQ(dialogs_.SaveFileDialog(question), folder_.filePath(QString::fromLatin1(row[1])));
    }
}

TEST_F(QtDialogsTest, TakesNoNameThatIsNothingButQuotes) {
    WhenDialogOpens([](QWidget &dialog) {
        Type(dialog, "\"\"");
        EXPECT_TRUE(dialog.isVisible());
        dialog.close();
    });
    EXPECT_EQ(dialogs_.SaveFileDialog(Question()), std::nullopt);
}

TEST_F(QtDialogsTest, GoesIntoAFolderThatIsTyped) {
    ASSERT_TRUE(QDir(folder_.path()).mkdir(QStringLiteral("sub")));
    WhenDialogOpens([](QWidget &dialog) {
        Type(dialog, "sub");
        EXPECT_TRUE(dialog.isVisible());
        Type(dialog, "Roll 1.5");
    });
    EXPECT_EQ(dialogs_.SaveFileDialog(Question()), folder_.filePath(QStringLiteral("sub/Roll 1.5.ztv")));
}

#ifdef Q_OS_UNIX
TEST_F(QtDialogsTest, FindsTheHomeFolderByItsTilde) {
    const QTemporaryDir home;
    const QByteArray before = qgetenv("HOME");
    qputenv("HOME", QFile::encodeName(home.path()));
    ASSERT_TRUE(QDir(home.path()).mkdir(QStringLiteral("sub")));
    for (const char *folder : {"~", "~/sub"}) {
        const QString path = home.path() + QString::fromLatin1(folder).mid(1);
        for (const char *name : {"Roll 1.5", "Roll 12\""}) {
            WhenDialogOpens([&](QWidget &dialog) {
                Type(dialog, folder);
                EXPECT_TRUE(dialog.isVisible());
                Type(dialog, name);
            });
            const QString file = u'/' + QString::fromLatin1(name) + QStringLiteral(".ztv");
            EXPECT_EQ(dialogs_.SaveFileDialog(Question()), path + file);
            WhenDialogOpens(
                [&](QWidget &dialog) { Type(dialog, (QByteArray(folder) + '/' + name).constData()); });
            EXPECT_EQ(dialogs_.SaveFileDialog(Question()), path + file);
        }
    }
    qputenv("HOME", before);
}
#endif

TEST_F(QtDialogsTest, OpensAFileWithAQuoteInItsName) {
    const QString file = folder_.filePath(QStringLiteral("Roll 12\".ztv"));
    EXPECT_TRUE(QFile::copy(folder_.filePath(QStringLiteral("a.ztv")), file));
    WhenDialogOpens([](QWidget &dialog) { Type(dialog, "Roll 12\".ztv"); });
    EXPECT_EQ(dialogs_.OpenFileDialog(Question()), file);
    WhenDialogOpens([](QWidget &dialog) { Type(dialog, "\"a.ztv\""); });
    EXPECT_EQ(dialogs_.OpenFileDialog(Question()), folder_.filePath(QStringLiteral("a.ztv")));
}

TEST_F(QtDialogsTest, AsksBeforeAFileWhoseNameIsCompletedIsOverwritten) {
    for (const char *name : {"Roll 1.5", "Roll 12\""}) {
        SCOPED_TRACE(name);
        const QString file = folder_.filePath(QString::fromLatin1(name) + QStringLiteral(".ztv"));
        EXPECT_TRUE(QFile::copy(folder_.filePath(QStringLiteral("a.ztv")), file));
        for (const auto answer : {QMessageBox::No, QMessageBox::Yes}) {
            WhenDialogOpens([&](QWidget &dialog) {
                WhenDialogOpens([&](QWidget &box) {
                    auto &question = dynamic_cast<QMessageBox &>(box);
                    EXPECT_EQ(question.text(),
                              QFileInfo(file).fileName() +
                                  QStringLiteral(" already exists.\nDo you want to replace it?"));
                    question.button(answer)->click();
                });
                Type(dialog, name);
                if (answer == QMessageBox::No) {
                    EXPECT_TRUE(dialog.isVisible());
                    dialog.close();
                }
            });
            EXPECT_EQ(dialogs_.SaveFileDialog(Question()).has_value(), answer == QMessageBox::Yes);
        }
    }
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

TEST_F(QtDialogsTest, ABoxHasTheIconOfItsStyle) {
    const std::pair<BoxIcon, QMessageBox::Icon> rows[] = {{BoxIcon::None, QMessageBox::NoIcon},
                                                          {BoxIcon::Information, QMessageBox::Information},
                                                          {BoxIcon::Question, QMessageBox::Question},
                                                          {BoxIcon::Exclamation, QMessageBox::Warning},
                                                          {BoxIcon::Critical, QMessageBox::Critical}};
    for (const auto &[asked, shown] : rows) {
        WhenDialogOpens([shown = shown](QWidget &dialog) {
            auto &box = dynamic_cast<QMessageBox &>(dialog);
            EXPECT_EQ(box.icon(), shown);
            EXPECT_EQ(box.iconPixmap().isNull(), shown == QMessageBox::NoIcon);
            EXPECT_EQ(box.text(), QStringLiteral("<b>?</b>"));
            EXPECT_EQ(box.textFormat(), Qt::PlainText);
            EXPECT_EQ(box.windowTitle(), QStringLiteral("ZTV Link"));
            box.close();
        });
        dialogs_.OwnedMessageBox(QStringLiteral("<b>?</b>"), {.icon = asked, .buttons = BoxButtons::Ok},
                                 QStringLiteral("ZTV Link"));
    }
}

TEST_F(QtDialogsTest, ABoxShowsItsInformativeTextBelowItsText) {
    WhenDialogOpens([](QWidget &dialog) {
        auto &box = dynamic_cast<QMessageBox &>(dialog);
        EXPECT_EQ(box.text(), QStringLiteral("Error"));
        EXPECT_EQ(box.informativeText(), QStringLiteral("<b>300.00\"</b>"));
        EXPECT_EQ(box.textFormat(), Qt::PlainText);
        box.close();
    });
    dialogs_.OwnedMessageBox(QStringLiteral("Error"), {.informativeText = QStringLiteral("<b>300.00\"</b>")},
                             QString());
}

TEST_F(QtDialogsTest, ABoxHasTheButtonsOfItsStyleAndAnswersByEach) {
    struct Row {
        QMessageBox::StandardButton button;
        BoxAnswer answer;
    };
    const Row ok = {QMessageBox::Ok, BoxAnswer::Ok};
    const Row yes = {QMessageBox::Yes, BoxAnswer::Yes};
    const Row no = {QMessageBox::No, BoxAnswer::No};
    const Row cancel = {QMessageBox::Cancel, BoxAnswer::Cancel};
    const std::pair<BoxButtons, std::vector<Row>> styles[] = {
        {BoxButtons::Ok, {ok}}, {BoxButtons::YesNo, {yes, no}}, {BoxButtons::YesNoCancel, {yes, no, cancel}}};
    for (const auto &[buttons, rows] : styles) {
        QMessageBox::StandardButtons expected;
        for (const Row &row : rows) {
            expected |= row.button;
        }
        for (const Row &row : rows) {
            WhenDialogOpens([expected, button = row.button](QWidget &dialog) {
                auto &box = dynamic_cast<QMessageBox &>(dialog);
                EXPECT_EQ(box.standardButtons().toInt(), expected.toInt());
                box.button(button)->click();
            });
            EXPECT_EQ(Ask(buttons), row.answer);
        }
    }
}

TEST_F(QtDialogsTest, EscapeIsTheAnswerThatChangesNothing) {
    const auto escape = [](QWidget &box) { QTest::keyClick(&box, Qt::Key_Escape); };
    WhenDialogOpens(escape);
    EXPECT_EQ(Ask(BoxButtons::YesNoCancel), BoxAnswer::Cancel);
    WhenDialogOpens(escape);
    EXPECT_EQ(Ask(BoxButtons::Ok), BoxAnswer::Ok);
    WhenDialogOpens(escape);
    EXPECT_EQ(Ask(BoxButtons::YesNo), BoxAnswer::No);
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

} // namespace ztv

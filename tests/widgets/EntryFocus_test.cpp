#include "widgets/EntryFocus.h"

#include "tests/helpers/Form.h"
#include "tests/helpers/MainForm.h"
#include "tests/helpers/Printers.h"
#include "tests/helpers/Wait.h"

#include <QApplication>
#include <QCheckBox>
#include <QDialog>
#include <QLabel>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QVBoxLayout>
#include <gtest/gtest.h>

namespace ztv {

namespace {

// A dialog with two checked boxes and the controls to leave them for.
class EntryWindow : public QDialog {
public:
    EntryWindow() {
        auto *label = new QLabel(QStringLiteral("&First:"));
        label->setBuddy(first);
        auto *column = new QVBoxLayout(this);
        for (QWidget *widget : std::initializer_list<QWidget *>{label, first, second, check, other, accept}) {
            column->addWidget(widget);
        }
        accept->setDefault(true);
        first->setText(QStringLiteral("12"));
        second->setText(QStringLiteral("34"));
    }

    QLineEdit *first = new QLineEdit;
    QLineEdit *second = new QLineEdit;
    QCheckBox *check = new QCheckBox(QStringLiteral("&Check"));
    QPushButton *other = new QPushButton(QStringLiteral("&Other"));
    QPushButton *accept = new QPushButton(QStringLiteral("&Accept"));
};

} // namespace

class EntryFocusTest : public testing::Test {
protected:
    EntryFocusTest() {
        QObject::connect(window_.other, &QPushButton::clicked, [this] { ++otherClicks_; });
        QObject::connect(window_.accept, &QPushButton::clicked, [this] { ++acceptClicks_; });
        EntryFocus::SelectAllOnEntry(*window_.first);
        EntryFocus::SelectAllOnEntry(*window_.second);
        EntryFocus::ValidateOnLeave(*window_.first, [this] { return Answer(firstIsValid_, firstChecks_); });
        EntryFocus::ValidateOnLeave(*window_.second,
                                    [this] { return Answer(secondIsValid_, secondChecks_); });
        window_.show();
        window_.activateWindow();
        EXPECT_TRUE(WaitUntil([this] { return window_.isActiveWindow(); }));
        window_.first->setFocus();
        window_.first->deselect();
        Settle();
    }

    bool Answer(bool valid, int &checks) {
        ++checks;
        if (!valid && whenRefused_) {
            whenRefused_();
        }
        return valid;
    }

    static void Click(QWidget *widget) {
        QTest::mouseClick(widget, Qt::LeftButton);
        Settle();
    }

    // Sends the key through the window, as the window system does.
    void ClickInWindow(QWidget *widget) {
        QTest::mouseClick(window_.windowHandle(), Qt::LeftButton, {},
                          widget->mapTo(&window_, widget->rect().center()));
        Settle();
    }

    void Key(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(window_.focusWidget(), key, modifiers);
        Settle();
    }

    void ExpectHeld() {
        EXPECT_TRUE(window_.first->hasFocus());
        EXPECT_EQ(window_.first->selectedText(), window_.first->text());
        EXPECT_EQ(firstChecks_, 1);
        EXPECT_EQ(secondChecks_, 0);
        EXPECT_EQ(otherClicks_, 0);
        EXPECT_EQ(acceptClicks_, 0);
        EXPECT_FALSE(window_.check->isChecked());
        firstChecks_ = 0;
        window_.first->deselect();
    }

    EntryWindow window_;
    bool firstIsValid_ = false;
    bool secondIsValid_ = true;
    int firstChecks_ = 0;
    int secondChecks_ = 0;
    int otherClicks_ = 0;
    int acceptClicks_ = 0;
    std::function<void()> whenRefused_;
};

TEST_F(EntryFocusTest, HoldsTheFocusAgainstClicks) {
    for (QWidget *target :
         std::initializer_list<QWidget *>{window_.second, window_.check, window_.other, window_.accept}) {
        Click(target);
        ExpectHeld();
        ClickInWindow(target);
        ExpectHeld();
        EXPECT_FALSE(window_.other->isDown());
    }
}

TEST_F(EntryFocusTest, HoldsTheFocusAgainstKeys) {
    Key(Qt::Key_Tab);
    ExpectHeld();
    Key(Qt::Key_Backtab, Qt::ShiftModifier);
    ExpectHeld();
    Key(Qt::Key_Return);
    ExpectHeld();
    Key(Qt::Key_Enter, Qt::KeypadModifier);
    ExpectHeld();
    for (const Qt::Key mnemonic : {Qt::Key_O, Qt::Key_C, Qt::Key_A}) {
        Key(mnemonic, Qt::AltModifier);
        ExpectHeld();
    }
}

TEST_F(EntryFocusTest, TakesTheFocusBackFromAControlThatWasGivenItByOtherMeans) {
    window_.other->setFocus();
    Settle();
    ExpectHeld();
    window_.second->setFocus(); // this box is invalid too, but isn't checked
    secondIsValid_ = false;
    Settle();
    ExpectHeld();
}

TEST_F(EntryFocusTest, LetsAValidEntryGo) {
    firstIsValid_ = true;
    Click(window_.other);
    EXPECT_EQ(otherClicks_, 1);
    EXPECT_EQ(firstChecks_, 1);
    EXPECT_TRUE(window_.other->hasFocus());

    Click(window_.first);
    Key(Qt::Key_Tab);
    EXPECT_TRUE(window_.second->hasFocus());
    EXPECT_EQ(firstChecks_, 2);

    Key(Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_EQ(secondChecks_, 1);
    Key(Qt::Key_Return);
    EXPECT_EQ(acceptClicks_, 1);
    EXPECT_EQ(firstChecks_, 3);

    Key(Qt::Key_C, Qt::AltModifier);
    EXPECT_EQ(firstChecks_, 4);
    EXPECT_TRUE(WaitUntil([this] { return window_.check->isChecked(); }));
    window_.first->setFocus();
    window_.second->setFocus();
    Settle();
    EXPECT_EQ(firstChecks_, 5);
    EXPECT_TRUE(window_.second->hasFocus());
}

TEST_F(EntryFocusTest, HoldsEachOfTwoThatAreNeitherValid) {
    secondIsValid_ = false;
    Click(window_.second);
    ExpectHeld();
    firstIsValid_ = true;
    Click(window_.second);
    EXPECT_TRUE(window_.second->hasFocus());
    Click(window_.first);
    EXPECT_TRUE(window_.second->hasFocus());
    EXPECT_EQ(secondChecks_, 1);
    EXPECT_EQ(firstChecks_, 1);
}

TEST_F(EntryFocusTest, AsksOnceAlthoughItsBoxTakesTheFocusAndTurnsTheEventLoop) {
    for (const bool byMouse : {true, false}) {
        int boxes = 0;
        whenRefused_ = [&] {
            WhenDialogOpens([&](QWidget &box) {
                ++boxes;
                Settle();
                QTest::keyClick(&box, Qt::Key_Return);
            });
            QMessageBox(QMessageBox::Warning, QStringLiteral("Title"), QStringLiteral("Refused"),
                        QMessageBox::Ok, &window_)
                .exec();
        };
        if (byMouse) {
            ClickInWindow(window_.other);
        } else {
            Key(Qt::Key_Tab);
        }
        window_.activateWindow(); // as a desktop does
        EXPECT_TRUE(WaitUntil([this] { return window_.isActiveWindow(); }));
        Settle();
        EXPECT_EQ(boxes, 1);
        ExpectHeld();
    }
    // The next click works as usual.
    whenRefused_ = {};
    firstIsValid_ = true;
    ClickInWindow(window_.other);
    EXPECT_EQ(otherClicks_, 1);
}

// A check may write, and during the write's wait the user can open another form.
TEST_F(EntryFocusTest, AsksInAWindowThatIsOpenedDuringACheck) {
    int checks = 0;
    whenRefused_ = [&checks] {
        EntryWindow window;
        EntryFocus::ValidateOnLeave(*window.first, [&checks] {
            ++checks;
            return true;
        });
        window.show();
        window.activateWindow();
        EXPECT_TRUE(WaitUntil([&] { return window.isActiveWindow(); }));
        window.first->setFocus();
        QTest::keyClick(window.first, Qt::Key_Tab);
        Settle();
        EXPECT_EQ(checks, 1);
        window.first->setFocus();
        Click(window.other);
        EXPECT_EQ(checks, 2);
    };
    Key(Qt::Key_Tab);
    EXPECT_EQ(checks, 2);
}

TEST_F(EntryFocusTest, LetsTheWindowBeClosed) {
    Key(Qt::Key_Escape);
    EXPECT_FALSE(window_.isVisible());
    window_.show();
    EXPECT_TRUE(WaitUntil([this] { return window_.isActiveWindow(); }));
    window_.first->setFocus();
    window_.close();
    Settle();
    EXPECT_FALSE(window_.isVisible());
    EXPECT_EQ(firstChecks_, 0);
}

TEST_F(EntryFocusTest, AsksNothingWhenItIsClosedWhileTheAnswerIsOwed) {
    window_.other->setFocus();
    window_.close();
    Settle();
    EXPECT_EQ(firstChecks_, 0);
}

TEST_F(EntryFocusTest, TakesNeitherAnotherWindowNorAMenuForLeaving) {
    QPushButton elsewhere(QStringLiteral("Elsewhere"));
    elsewhere.show();
    elsewhere.activateWindow();
    EXPECT_TRUE(WaitUntil([&] { return elsewhere.isActiveWindow(); }));
    Click(&elsewhere);
    window_.activateWindow();
    EXPECT_TRUE(WaitUntil([this] { return window_.isActiveWindow(); }));
    EXPECT_TRUE(window_.first->hasFocus());

    QMenu menu(&window_);
    menu.addAction(QStringLiteral("Entry"));
    menu.popup(window_.mapToGlobal(QPoint()));
    Settle();
    menu.close();
    Settle();
    EXPECT_EQ(firstChecks_, 0);
}

TEST_F(EntryFocusTest, DoesNotCheckWhatIsTakenAway) {
    window_.first->setEnabled(false);
    Settle();
    EXPECT_EQ(firstChecks_, 0);
    window_.first->setEnabled(true);
    window_.first->setFocus();
    window_.first->hide();
    Settle();
    EXPECT_EQ(firstChecks_, 0);
}

TEST_F(EntryFocusTest, StaysByItsOwnMnemonicAndByOtherKeys) {
    Key(Qt::Key_F, Qt::AltModifier);
    Key(Qt::Key_Down);
    QTest::keyClicks(window_.first, QStringLiteral("5"));
    Settle();
    EXPECT_EQ(firstChecks_, 0);
    EXPECT_TRUE(window_.first->hasFocus());
}

TEST_F(EntryFocusTest, OutlivesABoxThatIsGoneWhenTheUserWasTold) {
    auto window = std::make_unique<EntryWindow>();
    EntryFocus::ValidateOnLeave(*window->first, [&] {
        window.reset();
        return false;
    });
    window->show();
    window->activateWindow();
    EXPECT_TRUE(WaitUntil([&] { return window->isActiveWindow(); }));
    window->first->setFocus();
    window->other->setFocus();
    EXPECT_TRUE(WaitUntil([&] { return window == nullptr; }));
}

TEST_F(EntryFocusTest, SelectsTheWholeTextByWhateverWayTheFocusComes) {
    firstIsValid_ = true;
    QLineEdit &box = *window_.second;
    Key(Qt::Key_Tab);
    EXPECT_EQ(box.selectedText(), QStringLiteral("34"));
    window_.first->setFocus();
    box.deselect();
    Click(&box);
    EXPECT_EQ(box.selectedText(), QStringLiteral("34"));
    Click(&box); // the second one sets the cursor
    EXPECT_FALSE(box.hasSelectedText());
    window_.first->setFocus();
    ClickInWindow(&box);
    EXPECT_EQ(box.selectedText(), QStringLiteral("34"));
    window_.first->setFocus();
    box.deselect();
    box.setFocus();
    EXPECT_EQ(box.selectedText(), QStringLiteral("34"));
}

TEST_F(EntryFocusTest, SelectsTheTextOfTheBoxThatAWindowOpensWith) {
    EntryWindow window;
    EntryFocus::SelectAllOnEntry(*window.first);
    window.first->setFocus();
    window.show();
    window.activateWindow();
    EXPECT_TRUE(WaitUntil([&] { return window.first->hasFocus(); }));
    EXPECT_EQ(window.first->selectedText(), QStringLiteral("12"));
}

TEST_F(EntryFocusTest, LeavesTheSelectionAsItWasBehindAnotherWindow) {
    window_.first->setSelection(1, 1);
    QDialog elsewhere;
    elsewhere.show();
    elsewhere.activateWindow();
    EXPECT_TRUE(WaitUntil([&] { return elsewhere.isActiveWindow(); }));
    window_.activateWindow();
    EXPECT_TRUE(WaitUntil([this] { return window_.first->hasFocus(); }));
    EXPECT_EQ(window_.first->selectedText(), QStringLiteral("2"));
}

TEST_F(EntryFocusTest, KeepsAPartThatWasDraggedOver) {
    QLineEdit &box = *window_.second;
    firstIsValid_ = true;
    box.setText(QStringLiteral("3456"));
    const int middle = box.height() / 2;
    QTest::mousePress(&box, Qt::LeftButton, {}, QPoint(2, middle));
    QTest::mouseMove(&box, QPoint(2 + box.fontMetrics().horizontalAdvance(QStringLiteral("34")) + 3, middle));
    QTest::mouseRelease(&box, Qt::LeftButton, {},
                        QPoint(2 + box.fontMetrics().horizontalAdvance(QStringLiteral("34")) + 3, middle));
    EXPECT_TRUE(box.hasSelectedText());
    EXPECT_NE(box.selectedText(), box.text());
}

TEST_F(EntryFocusTest, HoldsABoxThatHasTheFocusAlready) {
    auto *late = new QLineEdit;
    window_.layout()->addWidget(late);
    window_.first->clear();
    firstIsValid_ = true;
    late->setFocus();
    Settle();
    ASSERT_TRUE(late->hasFocus());
    int checks = 0;
    EntryFocus::ValidateOnLeave(*late, [&checks] {
        ++checks;
        return false;
    });
    Click(window_.other);
    EXPECT_TRUE(late->hasFocus());
    EXPECT_EQ(checks, 1);
    EXPECT_EQ(otherClicks_, 0);
}

} // namespace ztv

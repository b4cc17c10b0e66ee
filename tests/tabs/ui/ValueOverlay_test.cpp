#include "tabs/ui/ValueOverlay.h"

#include "model/ParamDefines.h"
#include "tests/helpers/FakeLink.h"
#include "tests/helpers/MainForm.h"
#include "tests/helpers/Printers.h"
#include "tests/helpers/ScriptedDialogs.h"
#include "tests/helpers/TestPresets.h"
#include "tests/helpers/Wait.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QVBoxLayout>
#include <algorithm>
#include <gtest/gtest.h>

namespace ztv {

// A window with the overlay over a box that shows the near distance.
class ValueOverlayTest : public testing::Test {
protected:
    ValueOverlayTest() {
        auto *column = new QVBoxLayout(&central_);
        for (QWidget *widget : std::initializer_list<QWidget *>{box_, next_, button_}) {
            column->addWidget(widget);
        }
        QObject::connect(button_, &QPushButton::clicked, [this] { ++clicks_; });
        QObject::connect(&overlay_, &ValueOverlay::Left, [this] {
            EXPECT_TRUE(overlay_.isHidden());
            ++left_;
        });
        window_.setCentralWidget(&central_);
        window_.show();
        window_.activateWindow();
        EXPECT_TRUE(WaitUntil([this] { return window_.isActiveWindow(); }));
        box_->setFocus();
    }
    ~ValueOverlayTest() override {
        overlay_.setParent(nullptr);
        window_.takeCentralWidget();
    }

    void Open(QChar first = {}) {
        overlay_.MoveOver(*box_, QStringLiteral(" 28"), QStringLiteral("12.00\""));
        overlay_.Open(first);
        ExpectOpen();
        left_ = 0;
    }

    void Type(const char *text) {
        QTest::keyClicks(QApplication::focusWidget(), QString::fromLatin1(text));
        Settle();
    }
    void Key(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(QApplication::focusWidget(), key, modifiers);
        Settle();
    }
    void ClickInWindow(QWidget *widget) {
        QTest::mouseClick(window_.windowHandle(), Qt::LeftButton, {},
                          widget->mapTo(&window_, widget->rect().center()));
        Settle();
    }

    void ExpectOpen() {
        EXPECT_TRUE(overlay_.isVisible());
        EXPECT_TRUE(overlay_.hasFocus());
    }
    void ExpectHeld() {
        ExpectOpen();
        EXPECT_EQ(overlay_.selectedText(), overlay_.text());
        EXPECT_EQ(left_, 0);
    }
    void ExpectLeftFor(QWidget *widget) {
        EXPECT_TRUE(overlay_.isHidden());
        EXPECT_TRUE(widget->hasFocus());
        EXPECT_EQ(left_, 1);
    }
    void ExpectRefusal(std::function<void()> whileOpen = {}) {
        dialogs_.ExpectNotice(QStringLiteral("Please enter a value between 6.00\" and 420.00\""),
                              BoxIcon::None, QString(), std::move(whileOpen));
    }
    int Near() const { return zentrova_.ParamValue(ParamDefines::NearDistance); }

    ClassZentrova zentrova_{ShippedPresetsFolder()};
    ScriptedDialogs dialogs_;
    EntryRules rules_{zentrova_, dialogs_};
    QMainWindow window_;
    QWidget central_;
    QLineEdit *box_ = new QLineEdit(QStringLiteral("12.00\""));
    QLineEdit *next_ = new QLineEdit;
    QPushButton *button_ = new QPushButton(QStringLiteral("&Press"));
    ValueOverlay overlay_{rules_, &central_};
    int clicks_ = 0;
    int left_ = 0;
};

TEST_F(ValueOverlayTest, IsHiddenAtRest) {
    EXPECT_EQ(overlay_.objectName(), QStringLiteral("Text1"));
    EXPECT_TRUE(overlay_.isHidden());
    overlay_.MoveOver(*box_, QStringLiteral("28"), QStringLiteral("12.00\""));
    EXPECT_TRUE(overlay_.isHidden());
    EXPECT_TRUE(box_->hasFocus());
}

TEST_F(ValueOverlayTest, OpensOverTheBoxWithItsTextSelected) {
    Open();
    EXPECT_EQ(overlay_.mapToGlobal(QPoint()), box_->mapToGlobal(QPoint()));
    EXPECT_EQ(overlay_.size(), box_->size());
    EXPECT_EQ(overlay_.property("Tag").toString(), QStringLiteral(" 28"));
    EXPECT_EQ(overlay_.accessibleName(), QStringLiteral("Near Distance"));
    EXPECT_EQ(overlay_.selectedText(), QStringLiteral("12.00\""));
    QWidget *above = central_.childAt(box_->geometry().center());
    EXPECT_EQ(above, &overlay_);
}

TEST_F(ValueOverlayTest, TheKeyThatOpensItReplacesTheText) {
    Open(u'7');
    EXPECT_EQ(overlay_.text(), QStringLiteral("7"));
    Type("5");
    EXPECT_EQ(overlay_.text(), QStringLiteral("75"));
}

TEST_F(ValueOverlayTest, EscapeLeavesTheTableAsItIs) {
    Open(u'7');
    Key(Qt::Key_Escape);
    ExpectLeftFor(box_);
    EXPECT_EQ(Near(), 1200);
}

TEST_F(ValueOverlayTest, EnterWritesAndGivesTheFocusBack) {
    for (const auto &[key, text, raw] :
         {std::tuple{Qt::Key_Return, "13.5\"", 1350}, {Qt::Key_Enter, "14", 1400}}) {
        Open();
        Type(text);
        Key(key);
        ExpectLeftFor(box_);
        EXPECT_EQ(Near(), raw);
    }
}

TEST_F(ValueOverlayTest, EnterKeepsARefusedValueSelected) {
    Open();
    for (const char *text : {"5", "abc"}) {
        ExpectRefusal();
        Type(text);
        Key(Qt::Key_Return);
        ExpectHeld();
        EXPECT_EQ(overlay_.text(), QString::fromLatin1(text));
        EXPECT_EQ(Near(), 1200);
    }
    Key(Qt::Key_Delete);
    ExpectRefusal();
    Key(Qt::Key_Return); // an empty text is no number
    ExpectOpen();
}

TEST_F(ValueOverlayTest, LeavingWritesAValidValue) {
    Open();
    Type("13");
    Key(Qt::Key_Tab);
    ExpectLeftFor(next_);
    EXPECT_EQ(Near(), 1300);

    Open();
    Type("14");
    ClickInWindow(button_);
    EXPECT_TRUE(overlay_.isHidden());
    EXPECT_EQ(left_, 1);
    EXPECT_EQ(clicks_, 1);
    EXPECT_EQ(Near(), 1400);

    Open();
    Type("15");
    button_->setFocus();
    Settle();
    ExpectLeftFor(button_);
    EXPECT_EQ(Near(), 1500);

    Open();
    Type("16");
    Key(Qt::Key_P, Qt::AltModifier);
    EXPECT_EQ(Near(), 1600);
}

TEST_F(ValueOverlayTest, LeavingIsRefusedWithTheValue) {
    Open();
    Type("5");
    ExpectRefusal();
    Key(Qt::Key_Tab);
    ExpectHeld();
    ExpectRefusal();
    ClickInWindow(button_);
    ExpectHeld();
    EXPECT_EQ(clicks_, 0);
    ExpectRefusal();
    next_->setFocus();
    Settle();
    ExpectHeld();
    Key(Qt::Key_Escape);
    ExpectLeftFor(box_);
    EXPECT_EQ(Near(), 1200);
}

TEST_F(ValueOverlayTest, AnEmptyTextLeavesWithoutAMessage) {
    for (const bool byMouse : {false, true}) {
        Open();
        Key(Qt::Key_Delete);
        EXPECT_EQ(overlay_.text(), QString());
        if (byMouse) {
            ClickInWindow(next_);
        } else {
            Key(Qt::Key_Tab);
        }
        ExpectLeftFor(next_);
        EXPECT_EQ(Near(), 1200);
    }
}

TEST_F(ValueOverlayTest, StaysBehindAnotherWindow) {
    Open();
    Type("5");
    QDialog elsewhere;
    elsewhere.show();
    elsewhere.activateWindow();
    EXPECT_TRUE(WaitUntil([&] { return elsewhere.isActiveWindow(); }));
    EXPECT_TRUE(overlay_.isVisible());
    window_.activateWindow();
    EXPECT_TRUE(WaitUntil([this] { return overlay_.hasFocus(); }));
    EXPECT_EQ(overlay_.text(), QStringLiteral("5"));
}

TEST_F(ValueOverlayTest, HidesInTheTabOrderBehindWhatItStandsFor) {
    overlay_.MoveOver(*box_, QStringLiteral("28"), QString());
    EXPECT_EQ(box_->nextInFocusChain(), &overlay_);
    overlay_.MoveOver(*next_, QStringLiteral("29"), QString());
    EXPECT_EQ(next_->nextInFocusChain(), &overlay_);
    box_->setFocus();
    Key(Qt::Key_Tab);
    EXPECT_TRUE(next_->hasFocus());
    Key(Qt::Key_Tab);
    EXPECT_TRUE(button_->hasFocus()); // a hidden box can't have the focus
}

TEST_F(ValueOverlayTest, MayBeClosedBehindTheMessage) {
    for (const bool leaving : {false, true}) {
        Open();
        Type("5");
        ExpectRefusal([this] {
            overlay_.Close();
            Settle();
        });
        Key(leaving ? Qt::Key_Tab : Qt::Key_Return);
        EXPECT_TRUE(overlay_.isHidden());
        EXPECT_FALSE(overlay_.hasFocus());
        EXPECT_EQ(left_, 1);
        EXPECT_EQ(Near(), 1200);
    }
}

TEST_F(ValueOverlayTest, HoldsBehindARealMessageThatTurnsTheEventLoop) {
    struct RealBoxes : ScriptedDialogs {
        explicit RealBoxes(QWidget &owner) : owner_(owner) {}
        BoxAnswer OwnedMessageBox(const QString &text, BoxStyle, const QString &) override {
            ++shown;
            WhenDialogOpens([](QWidget &box) {
                Settle();
                QTest::keyClick(&box, Qt::Key_Return);
            });
            QMessageBox(QMessageBox::NoIcon, QString(), text, QMessageBox::Ok, &owner_).exec();
            return BoxAnswer::Ok;
        }
        QWidget &owner_;
        int shown = 0;
    } boxes(window_);
    EntryRules rules(zentrova_, boxes);
    ValueOverlay overlay(rules, &central_);
    const auto leave = {std::function<void()>([&] { ClickInWindow(button_); }),
                        std::function<void()>([&] { Key(Qt::Key_Tab); }),
                        std::function<void()>([&] { Key(Qt::Key_Return); }),
                        std::function<void()>([&] { next_->setFocus(); })};
    int expected = 0;
    for (const auto &way : leave) {
        overlay.MoveOver(*box_, QStringLiteral("28"), QStringLiteral("12.00\""));
        overlay.Open(u'5');
        way();
        Settle();
        window_.activateWindow(); // as a desktop does
        EXPECT_TRUE(WaitUntil([&] { return window_.isActiveWindow(); }));
        Settle();
        EXPECT_EQ(boxes.shown, ++expected);
        EXPECT_TRUE(overlay.isVisible());
        EXPECT_TRUE(overlay.hasFocus());
        EXPECT_EQ(overlay.selectedText(), QStringLiteral("5"));
        overlay.Close();
    }
    EXPECT_EQ(clicks_, 0);
}

TEST_F(ValueOverlayTest, LetsTheUserGoOnAtOnceWhileItsWriteWaits) {
    FakeLink link;
    zentrova_.ConnectTo(&link);
    link.holds = true;
    zentrova_.ParamValue(ParamDefines::ClockOut, 1);
    Open();
    Type("13");
    Key(Qt::Key_Return);
    ExpectLeftFor(box_);
    Open();
    Type("14");
    ClickInWindow(next_);
    ExpectLeftFor(next_);
    overlay_.MoveOver(*next_, QStringLiteral("29"), QStringLiteral("360.00\""));
    overlay_.Open(u'3');
    Type("00");
    Key(Qt::Key_Tab);
    EXPECT_TRUE(overlay_.isHidden());
    EXPECT_EQ(Near(), 1400);
    link.EndWrites(zentrova_);
    EXPECT_EQ(link.writes, (std::vector<std::pair<int, int>>{{23, 1}, {28, 1400}, {29, 30000}}));
}

} // namespace ztv

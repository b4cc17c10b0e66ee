#include "shell/LeastSize.h"

#include "tests/helpers/Printers.h"
#include "tests/helpers/Wait.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWidget>
#include <gtest/gtest.h>

namespace ztv {

namespace {

constexpr QSize given(680, 596);
constexpr QSize frame(4, 32); // that of a window, at least

} // namespace

class LeastSizeTest : public testing::Test {
protected:
    // Makes the screen as large as `room`, as when the desktop's scale or the screen itself changes.
    void Screen(const QRect &room) {
        room_ = room;
        Q_EMIT QGuiApplication::primaryScreen()->availableGeometryChanged(room);
        Settle();
    }

    QRect room_{0, 0, 1920, 1080};
    QWidget window_;
    LeastSize least_{window_, given, [this](const QScreen &) { return room_; }};
};

TEST_F(LeastSizeTest, IsTheGivenOneWhereTheScreenHasIt) {
    EXPECT_EQ(window_.minimumSize(), given);
    window_.resize(1000, 800);
    window_.show();
    Settle();
    EXPECT_EQ(window_.minimumSize(), given);
    EXPECT_EQ(window_.size(), QSize(1000, 800));
    Screen({0, 0, given.width() + frame.width(), given.height() + frame.height()});
    EXPECT_EQ(window_.minimumSize(), given);
}

TEST_F(LeastSizeTest, GivesWayToAScreenWithLessRoom) {
    window_.resize(given);
    window_.move(10, 10);
    window_.show();
    Settle();
    for (const QRect &room : {QRect(0, 27, 910, 485), QRect(0, 0, 960, 500), QRect(50, 0, 500, 400)}) {
        Screen(room);
        EXPECT_LE(window_.minimumSize().width(), room.width() - frame.width());
        EXPECT_LE(window_.minimumSize().height(), room.height() - frame.height());
        EXPECT_EQ(window_.minimumHeight(), room.height() - frame.height()) << "no less than it must";
        EXPECT_LE(window_.height(), room.height() - frame.height());
        EXPECT_GE(window_.y(), room.top());
        EXPECT_LE(window_.frameGeometry().bottom(), room.bottom()) << "the status bar is on the screen";
        EXPECT_EQ(window_.minimumWidth(), std::min(room.width() - frame.width(), given.width()));
    }
    Screen({0, 0, 1920, 1080});
    EXPECT_EQ(window_.minimumSize(), given);
    EXPECT_GE(window_.height(), given.height());
}

TEST_F(LeastSizeTest, LeavesASizeThatTheUserChoseOnALargerScreen) {
    window_.resize(1400, 900);
    window_.show();
    Settle();
    Screen({0, 0, 1366, 768}); // has the given room
    EXPECT_EQ(window_.size(), QSize(1400, 900));
    Screen({0, 0, 910, 485}); // lacks height
    EXPECT_EQ(window_.height(), 485 - frame.height());
}

TEST_F(LeastSizeTest, LeavesTheSizeOfAMaximisedWindowToTheDesktop) {
    window_.showMaximized();
    Settle();
    const QSize maximised = window_.size();
    Screen({0, 0, 910, 485});
    EXPECT_LE(window_.minimumHeight(), 485 - frame.height());
    EXPECT_EQ(window_.size(), maximised);
    EXPECT_TRUE(window_.isMaximized());
}

TEST_F(LeastSizeTest, KeepsAWindowOnTheScreenThatIsNoLongerMaximised) {
    window_.resize(given);
    window_.showMaximized();
    Settle();
    Screen({0, 0, 910, 485});
    window_.showNormal();
    EXPECT_TRUE(
        WaitUntil([this] { return !window_.isMaximized() && window_.height() <= 485 - frame.height(); }));
}

} // namespace ztv

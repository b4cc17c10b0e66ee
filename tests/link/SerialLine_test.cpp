#include "link/SerialLine.h"

#include "link/LinkStatus.h"
#include "tests/helpers/Printers.h"
#include "tests/helpers/ScriptedLine.h"
#include "tests/helpers/Wait.h"

#include <QCoreApplication>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <termios.h>
#include <unistd.h>

namespace ztv {

class SerialLineTest : public testing::Test {
protected:
    SerialLineTest() {
        QObject::connect(&line_, &SerialLine::BytesArrived, [this] { arrived_ += line_.TakeInput(); });
        QObject::connect(&line_, &SerialLine::HungUp, [this] { ++hangUps_; });
    }

    std::int16_t Open(Parity parity = Parity::None, StopBits stopBits = StopBits::Two,
                      int bitsPerSecond = 38400) {
        return line_.Open(
            {.device = far_.Path(), .bitsPerSecond = bitsPerSecond, .parity = parity, .stopBits = stopBits});
    }

    // Reads the terminal's settings from its other end.
    termios Set() const {
        termios set{};
        const int end = open(far_.Path().toLocal8Bit().constData(), O_RDWR | O_NOCTTY | O_NONBLOCK);
        EXPECT_EQ(tcgetattr(end, &set), 0);
        close(end);
        return set;
    }

    ScriptedLine far_;
    SerialLine line_;
    QByteArray arrived_;
    int hangUps_ = 0;
};

TEST_F(SerialLineTest, SetsTheDevice) {
    EXPECT_EQ(Open(Parity::None, StopBits::One, 9600), LinkStatus::NoError);
    EXPECT_EQ([](const termios &set) { return cfgetospeed(&set); }(Set()), B9600);
    EXPECT_EQ(Set().c_cflag & CSTOPB, 0U);
    EXPECT_EQ(Set().c_cflag & CSIZE, static_cast<tcflag_t>(CS8));
    line_.Close();
    EXPECT_EQ(Open(Parity::None, StopBits::Two, 38400), LinkStatus::NoError);
    EXPECT_NE(Set().c_cflag & CSTOPB, 0U);
}

TEST_F(SerialLineTest, KeepsNothingOfTheOpeningBefore) {
    EXPECT_EQ(Open(Parity::Odd), LinkStatus::NoError);
    EXPECT_NE(Set().c_cflag & PARODD, 0U);
    line_.Close();
    EXPECT_EQ(Open(Parity::None), LinkStatus::NoError);
    EXPECT_EQ(Set().c_cflag & PARODD, 0U);
}

TEST_F(SerialLineTest, RefusesWhatIsOpenOrNotThere) {
    EXPECT_EQ(Open(), LinkStatus::NoError);
    EXPECT_EQ(Open(), LinkStatus::AlreadyOpen);
    SerialLine other;
    EXPECT_EQ(other.Open({.device = QStringLiteral("/dev/there-is-no-such-port")}), LinkStatus::OpenFailed);
    EXPECT_FALSE(other.IsOpen());
}

TEST_F(SerialLineTest, CarriesBytesBothWays) {
    EXPECT_EQ(Open(), LinkStatus::NoError);
    EXPECT_TRUE(line_.Write("ping"));
    EXPECT_TRUE(WaitUntil([this] { return !far_.Requests().empty(); }));
    EXPECT_EQ(far_.Requests().front(), QByteArray("ping"));
    far_.Send("pong");
    EXPECT_TRUE(WaitUntil([this] { return arrived_ == "pong"; }));
}

TEST_F(SerialLineTest, TellsOfBytesFromTheEventLoopAlone) {
    EXPECT_EQ(Open(), LinkStatus::NoError);
    far_.Send("pong");
    EXPECT_EQ(line_.TakeAllInput(), QByteArray("pong")); // read directly from the system
    EXPECT_EQ(arrived_, QByteArray());
}

TEST_F(SerialLineTest, DropsItsInputWhenTold) {
    EXPECT_EQ(Open(), LinkStatus::NoError);
    far_.Send("stale");
    line_.ClearInput();
    far_.Send("fresh");
    EXPECT_TRUE(WaitUntil([this] { return arrived_.size() >= 5; }));
    EXPECT_EQ(arrived_, QByteArray("fresh"));
}

TEST_F(SerialLineTest, TakesInputThatIsGoneBeforeItIsReadForNoHangUp) {
    EXPECT_EQ(Open(), LinkStatus::NoError);
    for (int turn = 0; turn < 50; ++turn) {
        // The notice of the bytes and this call come in the same pass of the event loop.
        QMetaObject::invokeMethod(
            &line_,
            [this, turn] {
                if (turn % 2 == 0) {
                    line_.TakeAllInput();
                } else {
                    line_.ClearInput();
                }
            },
            Qt::QueuedConnection);
        far_.Send("gone");
        QCoreApplication::processEvents();
    }
    arrived_.clear();
    EXPECT_EQ(hangUps_, 0);
    EXPECT_TRUE(line_.IsOpen());
    far_.Send("pong");
    EXPECT_TRUE(WaitUntil([this] { return arrived_.endsWith("pong"); }));
}

TEST_F(SerialLineTest, TakesNoBytesForADeviceThatIsGone) {
    EXPECT_FALSE(line_.Write("ping"));
    EXPECT_EQ(Open(), LinkStatus::NoError);
    far_.HangUp();
    EXPECT_FALSE(line_.Write("ping"));
    EXPECT_FALSE(line_.IsOpen());
}

TEST_F(SerialLineTest, ReportsAHangUpOnceAndCloses) {
    EXPECT_EQ(Open(), LinkStatus::NoError);
    far_.HangUp();
    EXPECT_TRUE(WaitUntil([this] { return hangUps_ > 0; }));
    for (int turn = 0; turn < 20; ++turn) {
        Settle();
    }
    EXPECT_EQ(hangUps_, 1);
    EXPECT_FALSE(line_.IsOpen());
    EXPECT_EQ(line_.TakeAllInput(), QByteArray());
}

} // namespace ztv

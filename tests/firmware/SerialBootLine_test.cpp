#include "firmware/SerialBootLine.h"

#include "tests/helpers/Printers.h"
#include "tests/helpers/ScriptedLine.h"
#include "tests/helpers/Wait.h"

#include <QElapsedTimer>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <termios.h>
#include <unistd.h>

namespace ztv {

TEST(SerialBootLineTest, MovesBytesBothWays) {
    ScriptedLine far;
    const auto line = SerialBootLine::Open(far.Path(), 38400);
    ASSERT_NE(line, nullptr);
    ASSERT_TRUE(line->Write("\x0F\x0F"));
    ASSERT_TRUE(WaitUntil([&] { return !far.Requests().empty(); }));
    EXPECT_EQ(far.Requests().front(), QByteArray("\x0F\x0F"));
    far.Send("abc");
    EXPECT_EQ(line->Read(5000), QByteArray("abc"));
}

TEST(SerialBootLineTest, SetsTheDevice) {
    ScriptedLine far;
    const auto line = SerialBootLine::Open(far.Path(), 19200);
    ASSERT_NE(line, nullptr);
    termios set{};
    const int end = open(far.Path().toLocal8Bit().constData(), O_RDWR | O_NOCTTY | O_NONBLOCK);
    EXPECT_EQ(tcgetattr(end, &set), 0);
    close(end);
    EXPECT_EQ(cfgetospeed(&set), static_cast<speed_t>(B19200));
    EXPECT_EQ(set.c_cflag & (CSTOPB | PARODD), 0U);
}

TEST(SerialBootLineTest, WaitsNoLongerThanItMay) {
    ScriptedLine far;
    const auto line = SerialBootLine::Open(far.Path(), 38400);
    QElapsedTimer elapsed;
    elapsed.start();
    EXPECT_EQ(line->Read(40), QByteArray());
    EXPECT_GE(elapsed.elapsed(), 39);
}

TEST(SerialBootLineTest, DropsWhatWasntRead) {
    ScriptedLine far;
    const auto line = SerialBootLine::Open(far.Path(), 38400);
    far.Send("old");
    line->ClearInput();
    far.Send("new");
    EXPECT_EQ(line->Read(5000), QByteArray("new"));
}

TEST(SerialBootLineTest, TellsALineThatIsGone) {
    ScriptedLine far;
    const auto line = SerialBootLine::Open(far.Path(), 38400);
    far.HangUp();
    EXPECT_EQ(line->Read(5000), std::nullopt);
    EXPECT_EQ(line->Read(5000), std::nullopt);
    EXPECT_FALSE(line->Write("x"));
}

TEST(SerialBootLineTest, OpensNoDeviceThatIsntThere) {
    EXPECT_EQ(SerialBootLine::Open(QStringLiteral("/no/such/device"), 38400), nullptr);
}

TEST(SerialBootLineTest, FindsTheDeviceBehindAPortsName) {
    ScriptedLine far;
    std::vector<std::int16_t> asked;
    const OpenBootLine open = SerialBootLine::Opener([&](std::int16_t number) {
        asked.push_back(number);
        return far.Path();
    });
    EXPECT_NE(open("COM3", 38400), nullptr);
    EXPECT_NE(open("COM255", 2400), nullptr);
    EXPECT_EQ(asked, (std::vector<std::int16_t>{3, 255}));
    for (const char *name : {"", "COM", "COMx", "LPT1", "COM99999"}) {
        EXPECT_EQ(open(name, 38400), nullptr) << name;
    }
    EXPECT_EQ(asked.size(), 2u);
}

} // namespace ztv

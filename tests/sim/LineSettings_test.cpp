#include "sim/LineSettings.h"

#include <gtest/gtest.h>

#include <termios.h>

namespace sim {
namespace {

termios Host(speed_t speed, tcflag_t flags) {
    termios settings{};
    settings.c_cflag = flags;
    cfsetspeed(&settings, speed);
    return settings;
}

LineSettings Sensor(int baud, int parity) {
    return {1, baud, parity, 1};
}

TEST(SimLineSettings, MatchEverySpeed) {
    const speed_t speeds[] = {B2400, B4800, B9600, B19200, B38400};
    for (int sensor = 0; sensor < 5; ++sensor) {
        for (int host = 0; host < 5; ++host) {
            EXPECT_EQ(Sensor(sensor, 0).Matches(Host(speeds[host], 0)), sensor == host);
        }
    }
}

TEST(SimLineSettings, TellOneStopBitFromTwo) {
    EXPECT_TRUE(Sensor(4, 1).Matches(Host(B38400, CSTOPB)));
    EXPECT_FALSE(Sensor(4, 1).Matches(Host(B38400, 0)));
    EXPECT_FALSE(Sensor(4, 0).Matches(Host(B38400, CSTOPB)));
}

TEST(SimLineSettings, TellOddParity) {
    EXPECT_TRUE(Sensor(4, 3).Matches(Host(B38400, PARENB | PARODD)));
    EXPECT_FALSE(Sensor(4, 3).Matches(Host(B38400, 0)));
    EXPECT_FALSE(Sensor(4, 2).Matches(Host(B38400, PARENB | PARODD)));
    EXPECT_FALSE(Sensor(4, 0).Matches(Host(B38400, PARODD)));
}

TEST(SimLineSettings, TakeEvenParityThatTheTerminalForgot) {
    EXPECT_TRUE(Sensor(4, 2).Matches(Host(B38400, 0)));
    EXPECT_TRUE(Sensor(4, 2).Matches(Host(B38400, PARENB)));
}

TEST(SimLineSettings, GiveTheTimeOfACharacter) {
    EXPECT_DOUBLE_EQ(Sensor(0, 0).CharacterMs(), 10000.0 / 2400);
    EXPECT_DOUBLE_EQ(Sensor(4, 2).CharacterMs(), 11000.0 / 38400);
}

TEST(SimLineSettings, GiveTheLoaderCharactersOfTenBits) {
    EXPECT_DOUBLE_EQ(Sensor(0, 0).BootCharacterMs(), 10000.0 / 2400);
    EXPECT_DOUBLE_EQ(Sensor(4, 2).BootCharacterMs(), 10000.0 / 38400);
}

TEST(SimLineSettings, GiveTheTimeOfACharacterOfAHost) {
    EXPECT_DOUBLE_EQ(LineSettings::CharacterMsOf(Host(B2400, 0)), 10000.0 / 2400);
    EXPECT_DOUBLE_EQ(LineSettings::CharacterMsOf(Host(B38400, CSTOPB)), 11000.0 / 38400);
    EXPECT_DOUBLE_EQ(LineSettings::CharacterMsOf(Host(B9600, PARENB | PARODD)), 11000.0 / 9600);
    EXPECT_EQ(LineSettings::CharacterMsOf(Host(B300, 0)), 0);
}

TEST(SimLineSettings, AreReadFromText) {
    EXPECT_EQ(BaudFromText("2400"), 0);
    EXPECT_EQ(BaudFromText("38400"), 4);
    EXPECT_EQ(BaudFromText("300"), std::nullopt);
    EXPECT_EQ(ParityFromText("N1"), 0);
    EXPECT_EQ(ParityFromText("O1"), 3);
    EXPECT_EQ(ParityFromText("n1"), std::nullopt);
}

} // namespace
} // namespace sim

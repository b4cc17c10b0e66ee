#include "sim/Crc.h"
#include "tests/sim/TestHost.h"

#include <gtest/gtest.h>

namespace sim {
namespace {

using test::Hex;

TEST(SimCrc, OfTheCheckStringIsKnown) {
    EXPECT_EQ(Crc16("123456789"), 0x4B37);
}

TEST(SimCrc, IsAppendedLowByteFirst) {
    EXPECT_EQ(WithCrc(Hex("0207")), Hex("02074112"));
    EXPECT_EQ(WithCrc(Hex("1183 02")), Hex("118302C134"));
}

TEST(SimCrc, OverAGoodFrameIsZero) {
    for (const char *frame :
         {"1103006B00037687", "110306AE415652434049AD", "1106000100039A9B", "1110000100020400 0A0102C6F0",
          "11100001000 21298", "0A8102B053", "01030012 0008E409", "010600120001E80F",
          "2A0306123456782345 3060", "2A1000100002 4616"}) {
        EXPECT_EQ(Crc16(Hex(frame)), 0) << frame;
    }
}

TEST(SimCrc, OverADamagedFrameIsNotZero) {
    EXPECT_NE(Crc16(Hex("1103006B00037686")), 0);
}

} // namespace
} // namespace sim

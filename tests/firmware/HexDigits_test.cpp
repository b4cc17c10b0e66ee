#include "firmware/HexDigits.h"

#include "tests/helpers/Printers.h"

#include <gtest/gtest.h>

namespace ztv {

TEST(HexDigitsTest, PadsOnTheLeftToTheWidth) {
    EXPECT_EQ(HexDigits(0, 2), QStringLiteral("00"));
    EXPECT_EQ(HexDigits(0xA, 2), QStringLiteral("0A"));
    EXPECT_EQ(HexDigits(0xFF, 2), QStringLiteral("FF"));
    EXPECT_EQ(HexDigits(0x800, 6), QStringLiteral("000800"));
    EXPECT_EQ(HexDigits(0x30000F, 6), QStringLiteral("30000F"));
}

TEST(HexDigitsTest, TakesTheDigitsOneToTheLeftOfTheLowOnesFromAValueTooWide) {
    EXPECT_EQ(HexDigits(0x1234, 2), QStringLiteral("23"));
    EXPECT_EQ(HexDigits(0x123, 2), QStringLiteral("12"));
    EXPECT_EQ(HexDigits(-1, 2), QStringLiteral("FF"));
}

} // namespace ztv

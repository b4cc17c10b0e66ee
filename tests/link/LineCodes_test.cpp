#include "link/LineCodes.h"

#include "support/Fault.h"

#include <gtest/gtest.h>
#include <utility>

namespace ztv {

TEST(LineCodesTest, HaveACodeForEachIndexOfABaudRate) {
    const std::pair<int, int> rows[] = {{0, 3}, {1, 4}, {2, 5}, {3, 7}, {4, 8}, {5, 8}, {-1, 8}};
    for (const auto &[index, code] : rows) {
        EXPECT_EQ(LineCodesOf(static_cast<std::int16_t>(index), 0).baud, code) << index;
    }
}

TEST(LineCodesTest, HaveTwoCodesForEachIndexOfParityAndStopBits) {
    struct Row {
        int index;
        Parity parity;
        StopBits stopBits;
    };
    for (const Row &row : {Row{0, Parity::None, StopBits::One},
                           {1, Parity::None, StopBits::Two},
                           {2, Parity::Even, StopBits::One},
                           {3, Parity::Odd, StopBits::One},
                           {4, Parity::Odd, StopBits::One},
                           {-1, Parity::Odd, StopBits::One}}) {
        const LineCodes codes = LineCodesOf(0, static_cast<std::int16_t>(row.index));
        EXPECT_EQ(codes.parity, row.parity) << row.index;
        EXPECT_EQ(codes.stopBits, row.stopBits) << row.index;
    }
}

// The master accepts any number as a code.
TEST(LineCodesTest, ACodeThatThereIsNotStandsForTheFastestRate) {
    const std::pair<int, int> rows[] = {{3, 2400},  {4, 4800},  {5, 9600}, {7, 19200},
                                        {8, 38400}, {6, 38400}, {0, 38400}};
    for (const auto &[code, bitsPerSecond] : rows) {
        EXPECT_EQ(BitsPerSecond(static_cast<std::int16_t>(code)), bitsPerSecond) << code;
    }
}

TEST(LineCodesTest, HaveARateForEachIndexAndRefuseAnyOther) {
    const int rates[] = {2400, 4800, 9600, 19200, 38400};
    for (std::int16_t index = 0; index < 5; ++index) {
        EXPECT_EQ(BitsPerSecondOfIndex(index), rates[index]);
    }
    EXPECT_THROW(BitsPerSecondOfIndex(5), Fault);
    EXPECT_THROW(BitsPerSecondOfIndex(-1), Fault);
}

TEST(LineCodesTest, CountTenBitsToACharacterWithoutParityAndElevenToAnyOther) {
    EXPECT_EQ(LineTimeUs({.baud = 5, .parity = Parity::None, .stopBits = StopBits::One}, 96), 100'000);
    EXPECT_EQ(LineTimeUs({.baud = 5, .parity = Parity::None, .stopBits = StopBits::Two}, 96), 110'000);
    EXPECT_EQ(LineTimeUs({.baud = 5, .parity = Parity::Odd, .stopBits = StopBits::One}, 96), 110'000);
    EXPECT_EQ(LineTimeUs({.baud = 5, .parity = Parity::Even, .stopBits = StopBits::One}, 96), 110'000);
}

} // namespace ztv

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
        int parity;
        int stopBits;
    };
    for (const Row &row : {Row{0, 0, 0}, {1, 0, 1}, {2, 2, 0}, {3, 1, 0}, {4, 1, 0}, {-1, 1, 0}}) {
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
    EXPECT_EQ(LineTimeUs({.baud = 5, .parity = 0, .stopBits = 0}, 96), 100'000);
    EXPECT_EQ(LineTimeUs({.baud = 5, .parity = 0, .stopBits = 1}, 96), 110'000);
    EXPECT_EQ(LineTimeUs({.baud = 5, .parity = 1, .stopBits = 0}, 96), 110'000);
    EXPECT_EQ(LineTimeUs({.baud = 5, .parity = 2, .stopBits = 0}, 96), 110'000);
}

} // namespace ztv

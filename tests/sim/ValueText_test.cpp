#include "sim/ValueText.h"

#include <gtest/gtest.h>

namespace sim {
namespace {

TEST(SimValueText, ReadsWholeNumbersWithinTheirLimits) {
    EXPECT_EQ(WholeNumber("-5", -5, 5), -5);
    EXPECT_EQ(WholeNumber("6", -5, 5), std::nullopt);
    EXPECT_EQ(WholeNumber("1.0", -5, 5), std::nullopt);
    EXPECT_EQ(WholeNumber("", -5, 5), std::nullopt);
}

TEST(SimValueText, ReadsAddresses) {
    EXPECT_EQ(HexNumber("0x0bFf", 0xFFFF), 0xBFF);
    EXPECT_EQ(HexNumber("2048", 2048), 2048);
    for (const char *bad : {"0x801", "2049", "-1", "0x", "800h", "0x-1", ""}) {
        EXPECT_EQ(HexNumber(bad, 2048), std::nullopt) << bad;
    }
}

TEST(SimValueText, ReadsProbabilities) {
    EXPECT_EQ(Probability("0.25"), 0.25);
    EXPECT_EQ(Probability("1"), 1.0);
    for (const char *bad : {"1.01", "-0.1", "nan", "inf", "x", ""}) {
        EXPECT_EQ(Probability(bad), std::nullopt) << bad;
    }
}

TEST(SimValueText, ReadsHundredths) {
    EXPECT_EQ(Hundredths("12.34", 65535), 1234);
    EXPECT_EQ(Hundredths("655.35", 65535), 65535);
    EXPECT_EQ(Hundredths("655.36", 65535), std::nullopt);
    EXPECT_EQ(Hundredths("-1", 65535), std::nullopt);
}

TEST(SimValueText, ReadsSwitches) {
    EXPECT_EQ(OnOff("on"), true);
    EXPECT_EQ(OnOff("off"), false);
    EXPECT_EQ(OnOff("1"), std::nullopt);
}

} // namespace
} // namespace sim

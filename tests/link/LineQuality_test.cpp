#include "link/LineQuality.h"

#include <gtest/gtest.h>

namespace ztv {

class LineQualityTest : public testing::Test {
protected:
    void Add(int count, bool isGood) {
        for (int n = 0; n < count; ++n) {
            quality_.Add(isGood);
        }
    }

    LineQuality quality_;
};

TEST_F(LineQualityTest, IsUnknownBeforeTheFirstExchange) {
    EXPECT_EQ(quality_.Percent(), std::nullopt);
    EXPECT_EQ(quality_.Count(), 0U);
}

TEST_F(LineQualityTest, IsTheShareOfGoodExchanges) {
    Add(1, true);
    EXPECT_EQ(quality_.Percent(), 100);
    Add(1, false);
    EXPECT_EQ(quality_.Percent(), 50);
    Add(2, true);
    EXPECT_EQ(quality_.Percent(), 75);
    EXPECT_EQ(quality_.Count(), 4U);
}

TEST_F(LineQualityTest, IsRoundedDownSoThat100MeansAll) {
    Add(90, true);
    Add(1, false);
    EXPECT_EQ(quality_.Percent(), 98) << "90 of 91 are 98.9";
}

TEST_F(LineQualityTest, ForgetsAllButTheLastHundred) {
    Add(1, false);
    Add(99, true);
    EXPECT_EQ(quality_.Percent(), 99);
    Add(1, true);
    EXPECT_EQ(quality_.Percent(), 100);
    Add(11, false);
    EXPECT_EQ(quality_.Percent(), 89);
    Add(1000, true);
    EXPECT_EQ(quality_.Percent(), 100);
    EXPECT_EQ(quality_.Count(), 100U);
}

TEST_F(LineQualityTest, BeginsAnewWhenCleared) {
    Add(70, true);
    quality_.Clear();
    EXPECT_EQ(quality_.Percent(), std::nullopt);
    Add(3, false);
    EXPECT_EQ(quality_.Percent(), 0);
    Add(1, true);
    EXPECT_EQ(quality_.Percent(), 25) << "nothing of before the clearing counts";
}

} // namespace ztv

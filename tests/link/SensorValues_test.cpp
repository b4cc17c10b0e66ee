#include "link/SensorValues.h"

#include <gtest/gtest.h>

namespace ztv {

class SensorValuesTest : public testing::Test {
protected:
    void Poll(std::int32_t value) {
        values_.Polled(4, [value](std::int16_t) { return value; });
    }

    SensorValues values_;
};

TEST_F(SensorValuesTest, KnowsNothingBeforeAPoll) {
    values_.Confirmed(2, 5);
    EXPECT_FALSE(values_.IsKnown());
    EXPECT_EQ(values_.Value(2), std::nullopt);
}

TEST_F(SensorValuesTest, HasThePolledValuesAndTheConfirmedOnesSince) {
    Poll(7);
    values_.Confirmed(2, 5);
    EXPECT_EQ(values_.Value(1), 7);
    EXPECT_EQ(values_.Value(2), 5);
    EXPECT_EQ(values_.Value(4), std::nullopt);
    Poll(8);
    EXPECT_EQ(values_.Value(2), 8);
    EXPECT_TRUE(values_.IsCurrent());
}

TEST_F(SensorValuesTest, KeepsAnEarlierConnectionsValuesAsSuch) {
    Poll(7);
    values_.Outdate();
    values_.Confirmed(2, 5); // perhaps another sensor's
    EXPECT_TRUE(values_.IsKnown());
    EXPECT_FALSE(values_.IsCurrent());
    EXPECT_EQ(values_.Value(2), 7);
}

} // namespace ztv

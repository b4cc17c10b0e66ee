#include "chart/DistanceAxis.h"

#include "model/ParamDefines.h"
#include "tests/helpers/TestPresets.h"

#include <gtest/gtest.h>

namespace ztv {

class DistanceAxisTest : public testing::Test {
protected:
    void Range(std::int32_t min, std::int32_t nearest, std::int32_t farthest, std::int32_t max) {
        zentrova_.ParamUpdate(ParamDefines::MinRange, min);
        zentrova_.ParamUpdate(ParamDefines::NearDistance, nearest);
        zentrova_.ParamUpdate(ParamDefines::FarDistance, farthest);
        zentrova_.ParamUpdate(ParamDefines::MaxRange, max);
    }

    float At(std::int32_t distance) const {
        return DistanceAxis::PositionOf(
            distance, zentrova_, {.minToNear = {0, 100}, .nearToFar = {200, 300}, .farToMax = {400, 500}});
    }

    ClassZentrova zentrova_{ShippedPresetsFolder()};
};

TEST_F(DistanceAxisTest, HasAScaleOfItsOwnInEachSpan) {
    Range(600, 1600, 2600, 4600);
    EXPECT_EQ(At(850), 25);
    EXPECT_EQ(At(1599), 99.9F);
    EXPECT_EQ(At(1850), 225);
    EXPECT_EQ(At(3100), 425);
}

TEST_F(DistanceAxisTest, TakesTheEndsOfTheMiddleSpanIntoIt) {
    Range(600, 1600, 2600, 4600);
    EXPECT_EQ(At(1600), 200);
    EXPECT_EQ(At(2600), 300);
    EXPECT_EQ(At(2601), 400.05F);
}

TEST_F(DistanceAxisTest, StopsAtItsEnds) {
    Range(600, 1600, 2600, 4600);
    EXPECT_EQ(At(601), 0.1F);
    EXPECT_EQ(At(600), 0);
    EXPECT_EQ(At(0), 0);
    EXPECT_EQ(At(-32768), 0);
    EXPECT_EQ(At(4600), 500);
    EXPECT_EQ(At(65535), 500);
}

TEST_F(DistanceAxisTest, StepsWhereASpanIsEmpty) {
    Range(1600, 1600, 1600, 1600);
    EXPECT_EQ(At(1599), 0);
    EXPECT_EQ(At(1600), 200);
    EXPECT_EQ(At(1601), 500);
}

TEST_F(DistanceAxisTest, StepsWhereTheNearDistanceIsBehindTheFarOne) {
    Range(600, 3000, 2000, 4000);
    EXPECT_EQ(At(2000), 58.3333333F); // still below the near distance: 1400 of 2400
    EXPECT_EQ(At(3000), 450);         // already above the far one: 1000 of 2000
}

} // namespace ztv

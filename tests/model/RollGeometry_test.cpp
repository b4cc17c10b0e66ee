#include "model/RollGeometry.h"

#include "model/ParamDefines.h"
#include "support/Fault.h"
#include "tests/helpers/TestPresets.h"

#include <gtest/gtest.h>

namespace ztv {

class RollGeometryTest : public testing::Test {
protected:
    void Roll(std::int32_t core, std::int32_t max) {
        zentrova_.ParamUpdate(ParamDefines::CoreDiameter, core);
        zentrova_.ParamUpdate(ParamDefines::MaxDiameter, max);
    }

    ClassZentrova zentrova_{ShippedPresetsFolder()};
};

struct NearCase {
    std::int32_t farthest, core, max, nearest;
};

TEST_F(RollGeometryTest, LeavesTheNearDistanceOfTheFullRoll) {
    const NearCase cases[] = {
        {36000, 300, 2400, 34950}, {2600, 300, 301, 2600},                         // 2599.5
        {2601, 300, 301, 2600},                                                    // 2600.5
        {2602, 300, 303, 2600},                                                    // 2600.5
        {2603, 300, 301, 2602},                                                    // 2602.5
        {2600, 300, 300, 2600},    {2600, 500, 300, 2700}, {600, 1, 20000, -9400}, // -9399.5
    };
    for (const NearCase &expected : cases) {
        zentrova_.ParamUpdate(ParamDefines::FarDistance, expected.farthest);
        Roll(expected.core, expected.max);
        EXPECT_EQ(RollGeometry::NearDistance(zentrova_), expected.nearest)
            << expected.farthest << ", " << expected.core << ", " << expected.max;
    }
}

TEST_F(RollGeometryTest, ExistsWithEitherDiameter) {
    Roll(0, 0);
    EXPECT_FALSE(RollGeometry::Exists(zentrova_));
    Roll(300, 0);
    EXPECT_TRUE(RollGeometry::Exists(zentrova_));
    Roll(0, 2400);
    EXPECT_TRUE(RollGeometry::Exists(zentrova_));
}

TEST(RollGeometryOutputTest, DropsAsCoreByDiameter) {
    EXPECT_EQ(RollGeometry::OutputDrop(3, 3), 0);
    EXPECT_EQ(RollGeometry::OutputDrop(3, 12), 0.75F);
    EXPECT_THROW(RollGeometry::OutputDrop(3, 0), Fault);
}

} // namespace ztv

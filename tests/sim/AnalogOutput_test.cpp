#include "sim/AnalogOutput.h"
#include "sim/Parameters.h"
#include "sim/Registers.h"
#include "tests/sim/TestPresets.h"

#include <gtest/gtest.h>

namespace sim {
namespace {

class SimAnalogOutput : public testing::Test {
protected:
    SimAnalogOutput() : loaded_(table_.Load(presets_.Path())), registers_(table_) {}

    int At(int distance) const { return OutputVoltage(registers_, distance); }
    void Set(int number, int value) { registers_.Store(number, value); }

    test::TestPresets presets_;
    ParameterTable table_;
    QString loaded_;
    Registers registers_;
};

TEST_F(SimAnalogOutput, FollowsTheCountsInManualMode) {
    Set(parameter::AnalogOutputMode, 0);
    EXPECT_EQ(At(5000), 0);
    Set(parameter::ManualOutput, 1024);
    EXPECT_EQ(At(5000), 250);
    Set(parameter::ManualOutput, 2048);
    EXPECT_EQ(At(5000), 500);
    Set(parameter::ManualOutput, 4095);
    EXPECT_EQ(At(5000), 1000);
}

TEST_F(SimAnalogOutput, IsClippedToTheEndsInLinearMode) {
    EXPECT_EQ(At(1000), 0);
    EXPECT_EQ(At(2000), 0);
    EXPECT_EQ(At(4000), 250);
    EXPECT_EQ(At(10000), 1000);
    EXPECT_EQ(At(20000), 1000);
}

TEST_F(SimAnalogOutput, MayFallWithTheDistanceInLinearMode) {
    Set(parameter::NearVoltage, 800);
    Set(parameter::FarVoltage, 200);
    EXPECT_EQ(At(2000), 800);
    EXPECT_EQ(At(6000), 500);
    EXPECT_EQ(At(10000), 200);
}

TEST_F(SimAnalogOutput, StandsAnEmptyRangeInLinearMode) {
    Set(parameter::FarDistance, 2000);
    EXPECT_EQ(At(2000), 0);
    EXPECT_EQ(At(2001), 1000);
}

TEST_F(SimAnalogOutput, FollowsTheDiameterInHyperbolicMode) {
    Set(parameter::AnalogOutputMode, 2);
    EXPECT_EQ(At(10000), 1000);
    EXPECT_EQ(At(9800), 500);
    EXPECT_EQ(At(9000), 167);
    EXPECT_EQ(At(12000), 1000);
    EXPECT_EQ(At(1000), 100);
}

TEST_F(SimAnalogOutput, StandsSenselessDiametersInHyperbolicMode) {
    Set(parameter::AnalogOutputMode, 2);
    Set(parameter::MaxDiameter, 100);
    EXPECT_EQ(At(1000), 1000);
    Set(parameter::CoreDiameter, 0);
    EXPECT_EQ(At(1000), 0);
}

TEST_F(SimAnalogOutput, IsOffInOtherModes) {
    Set(parameter::AnalogOutputMode, 3);
    EXPECT_EQ(At(10000), 0);
}

} // namespace
} // namespace sim

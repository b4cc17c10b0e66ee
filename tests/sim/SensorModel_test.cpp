#include "sim/Parameters.h"
#include "sim/Registers.h"
#include "sim/SensorModel.h"
#include "tests/sim/TestPresets.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace sim {
namespace {

class SimSensorModel : public testing::Test {
protected:
    SimSensorModel() : loaded_(table_.Load(presets_.Path())), registers_(table_) {}

    int After(int number, qint64 ms = 0) {
        model_.Update(registers_, ms);
        return registers_.Value(number);
    }

    test::TestPresets presets_;
    ParameterTable table_;
    QString loaded_;
    Registers registers_;
    SensorModel model_{1};
};

TEST_F(SimSensorModel, MovesTheTargetSmoothlyBetweenItsEnds) {
    int nearest = 100000;
    int farthest = 0;
    int last = model_.TargetAt(0);
    for (qint64 ms = 0; ms < 60000; ms += 50) {
        const int target = model_.TargetAt(ms);
        EXPECT_LT(std::abs(target - last), 200);
        nearest = std::min(nearest, target);
        farthest = std::max(farthest, target);
        last = target;
    }
    EXPECT_NEAR(nearest, 1200, 5);
    EXPECT_NEAR(farthest, 20000, 5);
}

TEST_F(SimSensorModel, RepeatsItselfWithTheSameSeed) {
    EXPECT_EQ(SensorModel(7).TargetAt(1234), SensorModel(7).TargetAt(1234));
    EXPECT_NE(SensorModel(7).TargetAt(1234), SensorModel(8).TargetAt(1234));
}

TEST_F(SimSensorModel, MeasuresTheTarget) {
    EXPECT_EQ(After(parameter::ActualDistance, 4000), model_.TargetAt(4000));
    EXPECT_EQ(registers_.Value(parameter::EchoReceived), 1);
}

TEST_F(SimSensorModel, KeepsTheLastDistanceWithoutAnEcho) {
    model_.HoldTarget(5000);
    EXPECT_EQ(After(parameter::ActualDistance), 5000);
    for (const int outside : {599, 42001}) {
        model_.HoldTarget(outside);
        EXPECT_EQ(After(parameter::ActualDistance), 5000);
        EXPECT_EQ(registers_.Value(parameter::EchoReceived), 0);
    }
    model_.HoldTarget(600);
    EXPECT_EQ(After(parameter::ActualDistance), 600);
    model_.Hold(parameter::EchoReceived, 0);
    model_.HoldTarget(700);
    EXPECT_EQ(After(parameter::ActualDistance), 600);
    model_.Release(parameter::EchoReceived);
    EXPECT_EQ(After(parameter::ActualDistance), 700);
}

TEST_F(SimSensorModel, HoldsADistanceUntilTheTargetIsLetGo) {
    model_.Hold(parameter::ActualDistance, 1500);
    EXPECT_EQ(After(parameter::ActualDistance, 100), 1500);
    EXPECT_EQ(After(parameter::ActualDistance, 9000), 1500);
    model_.HoldTarget({});
    EXPECT_EQ(After(parameter::ActualDistance, 9000), model_.TargetAt(9000));
    EXPECT_NE(model_.TargetAt(9000), 1500);
}

TEST_F(SimSensorModel, DrivesTheOutputByTheDistance) {
    model_.HoldTarget(4000);
    EXPECT_EQ(After(parameter::OutputVoltage), 250);
}

TEST_F(SimSensorModel, SwitchesTheRelaysByTheirThresholds) {
    model_.HoldTarget(4900);
    EXPECT_EQ(After(parameter::Relay1State), 1);
    EXPECT_EQ(After(parameter::Relay1State + 1), 0);
    model_.HoldTarget(5500);
    EXPECT_EQ(After(parameter::Relay1State), 1);
    model_.HoldTarget(9500);
    EXPECT_EQ(After(parameter::Relay1State), 0);
    EXPECT_EQ(After(parameter::Relay1State + 1), 1);
}

TEST_F(SimSensorModel, ClosesAForcedRelay) {
    model_.HoldTarget(7000);
    EXPECT_EQ(After(parameter::Relay1State + 1), 0);
    registers_.Store(parameter::Relay1Output + 1, 1);
    EXPECT_EQ(After(parameter::Relay1State + 1), 1);
    registers_.Store(parameter::Relay1Output + 1, 0);
    EXPECT_EQ(After(parameter::Relay1State + 1), 0);
}

TEST_F(SimSensorModel, HoldsInputsThatWereSet) {
    EXPECT_EQ(After(parameter::TeachInput), 0);
    model_.Hold(parameter::TeachInput, 1);
    EXPECT_EQ(After(parameter::TeachInput), 1);
    EXPECT_NE(After(parameter::AnalogInputVoltage, 0), After(parameter::AnalogInputVoltage, 1750));
    model_.Hold(parameter::AnalogInputVoltage, 321);
    EXPECT_EQ(After(parameter::AnalogInputVoltage, 1750), 321);
}

} // namespace
} // namespace sim

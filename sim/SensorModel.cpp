#include "sim/SensorModel.h"

#include "sim/AnalogOutput.h"
#include "sim/Parameters.h"
#include "sim/Registers.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <numbers>
#include <random>

namespace sim {
namespace {

constexpr double nearestTarget = 1200;
constexpr double farthestTarget = 20000;
constexpr double analogInputMean = 500;
constexpr double analogInputSwing = 20;
constexpr double analogInputPeriodMs = 7000;

constexpr int measured[] = {parameter::TeachInput,     parameter::ExternalClockInput,
                            parameter::ActualDistance, parameter::EchoReceived,
                            parameter::OutputVoltage,  parameter::AnalogInputVoltage,
                            parameter::Relay1State,    parameter::Relay2State};

} // namespace

SensorModel::SensorModel(quint32 seed) {
    std::mt19937 random(seed);
    periodMs_ = 20000 + static_cast<double>(random() % 10000);
    phase_ = static_cast<double>(random() % 1000) / 1000;
}

void SensorModel::HoldTarget(std::optional<int> distance) {
    held_.erase(parameter::ActualDistance);
    target_ = distance;
}

int SensorModel::TargetAt(qint64 ms) const {
    if (target_) {
        return *target_;
    }
    const double turns = static_cast<double>(ms) / periodMs_ + phase_;
    const double share = (1 - std::cos(2 * std::numbers::pi * turns)) / 2;
    return static_cast<int>(std::lround(nearestTarget + (farthestTarget - nearestTarget) * share));
}

bool SensorModel::Measures(int number) {
    return std::find(std::begin(measured), std::end(measured), number) != std::end(measured);
}

void SensorModel::Hold(int number, int value) {
    held_[number] = value;
    if (number == parameter::ActualDistance) {
        target_ = value;
    }
}

void SensorModel::Release(int number) {
    held_.erase(number);
    if (number == parameter::ActualDistance) {
        target_.reset();
    }
}

void SensorModel::Measure(Registers &registers, int number, int value) const {
    const auto held = held_.find(number);
    registers.Store(number, held == held_.end() ? value : held->second);
}

void SensorModel::Update(Registers &registers, qint64 ms) {
    const int target = TargetAt(ms);
    const bool inRange =
        target >= registers.Value(parameter::MinRange) && target <= registers.Value(parameter::MaxRange);
    Measure(registers, parameter::EchoReceived, inRange ? parameter::EchoPresent : 0);
    // Without an echo the last distance stays.
    const bool echo = registers.Value(parameter::EchoReceived) != 0;
    Measure(registers, parameter::ActualDistance, echo ? target : registers.Value(parameter::ActualDistance));

    const int distance = registers.Value(parameter::ActualDistance);
    Measure(registers, parameter::OutputVoltage, OutputVoltage(registers, distance));
    for (int i = 0; i < 2; ++i) {
        const bool closed = relays_[static_cast<std::size_t>(i)].Update(
                                distance, registers.Value(parameter::Relay1OnThreshold + i),
                                registers.Value(parameter::Relay1OffThreshold + i)) ||
                            registers.Value(parameter::Relay1Output + i) != 0;
        Measure(registers, parameter::Relay1State + i, closed ? 1 : 0);
    }

    const double turns = static_cast<double>(ms) / analogInputPeriodMs;
    const double swing = analogInputSwing * std::sin(2 * std::numbers::pi * turns);
    Measure(registers, parameter::AnalogInputVoltage, static_cast<int>(std::lround(analogInputMean + swing)));
    Measure(registers, parameter::TeachInput, 0);
    Measure(registers, parameter::ExternalClockInput, 0);
}

} // namespace sim

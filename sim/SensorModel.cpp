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

constexpr int measured[] = {
    parameter::TeachInput,    parameter::ExternalClockInput, parameter::ActualDistance,
    parameter::EchoReceived,  parameter::OutputVoltage,      parameter::AnalogInputVoltage,
    parameter::Relay1State,   parameter::Relay2State,        parameter::EchoTime,
    parameter::EchoStrength,  parameter::ActualDiameter,     parameter::OutputRaw,
    parameter::AnalogInputRaw};

// The measurements and counts that a sensor starts with.
struct Reading {
    int number;
    int value;
};
constexpr Reading steady[] = {{parameter::RunHours, 1250},
                              {parameter::PowerCycles, 36},
                              {parameter::AirTemperature, 725},
                              {parameter::SupplyVoltage, 2410},
                              {parameter::PeakTemperature, 861}};

constexpr double echoTimePerDistance = 1.47617; // microseconds there and back, for a hundredth of an inch
constexpr int usualStrength = 64;
constexpr double outputCounts = 4.095; // for a hundredth of a volt
constexpr double inputCounts = 1.023;

int Rounded(double value) {
    return static_cast<int>(std::lround(value));
}

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
    return std::find(std::begin(measured), std::end(measured), number) != std::end(measured) ||
           std::any_of(std::begin(steady), std::end(steady),
                       [number](const Reading &reading) { return reading.number == number; });
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
    if (!registers.Has(number) || registers.Writable(number)) {
        return; // a table that has no such measurement
    }
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
    Measure(registers, parameter::AnalogInputVoltage, Rounded(analogInputMean + swing));
    Measure(registers, parameter::AnalogInputRaw,
            Rounded(registers.Value(parameter::AnalogInputVoltage) * inputCounts));
    Measure(registers, parameter::TeachInput, 0);
    Measure(registers, parameter::ExternalClockInput, 0);
    MeasureFromDistance(registers);
    for (const Reading &reading : steady) {
        Measure(registers, reading.number, reading.value);
    }
}

void SensorModel::MeasureFromDistance(Registers &registers) const {
    const int distance = registers.Value(parameter::ActualDistance);
    const bool echo = registers.Value(parameter::EchoReceived) != 0;
    Measure(registers, parameter::EchoTime, Rounded(distance * echoTimePerDistance));
    Measure(registers, parameter::EchoStrength, echo ? usualStrength : 0);
    Measure(registers, parameter::ActualDiameter, RollDiameter(registers, distance));
    Measure(registers, parameter::OutputRaw,
            Rounded(registers.Value(parameter::OutputVoltage) * outputCounts));
}

} // namespace sim

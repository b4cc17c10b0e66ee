#include "sim/AnalogOutput.h"

#include "sim/Parameters.h"
#include "sim/Registers.h"

#include <algorithm>
#include <cmath>

namespace sim {
namespace {

constexpr double fullScale = 1000.0;
constexpr double fullCounts = 4095.0;

double Manual(const Registers &registers) {
    return fullScale * registers.Value(parameter::ManualOutput) / fullCounts;
}

double Linear(const Registers &registers, double distance) {
    const double nearDistance = registers.Value(parameter::NearDistance);
    const double farDistance = registers.Value(parameter::FarDistance);
    const double nearVoltage = registers.Value(parameter::NearVoltage);
    const double farVoltage = registers.Value(parameter::FarVoltage);
    if (distance <= nearDistance) {
        return nearVoltage;
    }
    if (distance >= farDistance) {
        return farVoltage;
    }
    return nearVoltage +
           (farVoltage - nearVoltage) * (distance - nearDistance) / (farDistance - nearDistance);
}

double Diameter(const Registers &registers, double distance) {
    const double core = registers.Value(parameter::CoreDiameter);
    const double largest = std::max<double>(core, registers.Value(parameter::MaxDiameter));
    return std::clamp(core + 2 * (registers.Value(parameter::FarDistance) - distance), core, largest);
}

double Hyperbolic(const Registers &registers, double distance) {
    const double core = registers.Value(parameter::CoreDiameter);
    return core <= 0 ? 0 : fullScale * core / Diameter(registers, distance);
}

double Voltage(const Registers &registers, double distance) {
    switch (registers.Value(parameter::AnalogOutputMode)) {
    case parameter::ManualMode:
        return Manual(registers);
    case parameter::LinearMode:
        return Linear(registers, distance);
    case parameter::HyperbolicMode:
        return Hyperbolic(registers, distance);
    default:
        return 0;
    }
}

} // namespace

int OutputVoltage(const Registers &registers, int distance) {
    return static_cast<int>(std::lround(std::clamp(Voltage(registers, distance), 0.0, fullScale)));
}

int RollDiameter(const Registers &registers, int distance) {
    return static_cast<int>(std::lround(Diameter(registers, distance)));
}

} // namespace sim

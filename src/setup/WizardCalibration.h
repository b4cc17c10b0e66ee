#pragma once

#include "model/ClassZentrova.h"

#include <QString>
#include <cstdint>
#include <optional>
#include <vector>

namespace ztv {

// A raw value for a parameter.
struct ParameterValue {
    std::int16_t tag = 0;
    std::int32_t value = 0;

    bool operator==(const ParameterValue &) const = default;
};

// Arithmetic of the setup wizard: calculates the sensor's settings from the recorded and typed values.
namespace WizardCalibration {

// The recorded raw values, and the typed values as the wizard shows them: volts or inches with two decimals.
struct Ends {
    std::int32_t farRaw = 0;
    std::int32_t nearRaw = 0;
    QString farVoltage;
    QString nearVoltage;
};
struct Roll {
    QString coreDiameter;
    QString maxDiameter;
    QString distanceToCore;
    QString distanceToMax;
};

// The raw values to send to the sensor.
struct Settings {
    struct Diameters {
        std::int32_t core = 0;
        std::int32_t max = 0;
    };

    std::int32_t outputMode = 0;
    std::optional<Diameters> diameters;
    std::int32_t farDistance = 0;
    std::int32_t nearDistance = 0;
    std::int32_t farVoltage = 0;
    std::int32_t nearVoltage = 0;
};

// Return the settings of each route, without writing them. Throw a Fault (conversion, overflow) for a text
// that isn't a number or a value that doesn't fit a register.
Settings ForDistance(const ClassZentrova &zentrova, const Ends &ends);
Settings ForTorque(const ClassZentrova &zentrova, const Roll &roll);
Settings ForVelocity(const ClassZentrova &zentrova, const Roll &roll);

// Writes the settings in the order in which the sensor must receive them. After the distances, writes the
// range limits around the distances in the table; last, if `save`, writes the save command.
void Write(ClassZentrova &zentrova, const Settings &settings, bool save);

// Returns what Write asks for, in its order, also the values that the table has already and that Write
// therefore doesn't send.
std::vector<ParameterValue> ValuesOf(const ClassZentrova &zentrova, const Settings &settings, bool save);

// Returns the distance to the full roll's surface, with two decimals, from the distance to the empty core's
// surface and the diameters. Throws a Fault (conversion) for a text that isn't a number.
QString DistanceToMax(const QString &distanceToCore, const QString &coreDiameter, const QString &maxDiameter);

// Returns true if the full roll leaves the sensor enough room. Decides by the displayed text: 5.996 is
// displayed as "6.00" and passes.
bool LeavesRoom(const QString &distanceToMax);

// Returns the voltage at the core, in hundredths, if the full roll gives full scale: proportional to the
// diameter, with halves rounded to even. Diameters are in hundredths. Throws a Fault (division by zero) for a
// roll without a diameter.
std::int32_t TorqueVoltage(std::int32_t coreDiameter, std::int32_t maxDiameter);

} // namespace WizardCalibration

} // namespace ztv

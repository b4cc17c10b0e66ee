#pragma once

#include "model/ClassZentrova.h"

#include <QString>
#include <cstdint>
#include <optional>

// The arithmetic of the setup wizard: how what was recorded and typed becomes the sensor's settings.
namespace WizardCalibration {

// The recorded and typed values as the wizard shows them: numbers in a volt's or an inch's two decimals; a
// recorded one is the raw value.
struct Ends {
    QString farRaw;
    QString nearRaw;
    QString farVoltage;
    QString nearVoltage;
};
struct Roll {
    QString coreDiameter;
    QString maxDiameter;
    QString distanceToCore;
    QString distanceToMax;
};

// The values to send to the sensor, raw.
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

// The settings of each route. Nothing is written yet. Fault (conversion, overflow) for a text that is no
// number, or a value that no register can hold.
Settings ForDistance(const ClassZentrova &zentrova, const Ends &ends);
Settings ForTorque(const ClassZentrova &zentrova, const Roll &roll);
Settings ForVelocity(const ClassZentrova &zentrova, const Roll &roll);

// Writes them in the order in which the sensor is to get them, then its ranges' limits around the distances
// as the table holds them, and last the save command if wanted. Each write may turn the event loop.
void Write(ClassZentrova &zentrova, const Settings &settings, bool save);

// The distance to the full roll's surface, from the text of the distance to the empty core's, with two
// decimals. Fault (conversion) for a text that is no number.
QString DistanceToMax(const QString &distanceToCore, const QString &coreDiameter, const QString &maxDiameter);

// The full roll leaves the sensor room enough. What is shown decides: 5.996 shows as "6.00" and passes.
bool LeavesRoom(const QString &distanceToMax);

// The voltage at the core, in hundredths, where the full roll's is full scale: in proportion to the diameter,
// a half going to the even neighbour. Diameters in hundredths. Fault (division by zero).
std::int32_t TorqueVoltage(std::int32_t coreDiameter, std::int32_t maxDiameter);

} // namespace WizardCalibration

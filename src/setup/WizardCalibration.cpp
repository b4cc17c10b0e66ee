#include "setup/WizardCalibration.h"

#include "model/Global.h"
#include "model/ParamDefines.h"
#include "support/Fault.h"
#include "support/Numbers.h"

namespace ztv {

namespace {

using WizardCalibration::Roll;
using WizardCalibration::Settings;

constexpr double leastDistanceToMax = 6.0; // inches
constexpr int shownDecimals = 2;
constexpr std::int32_t rangeMargin = 500;
constexpr std::int32_t fullScale = 1000;
constexpr std::int64_t torqueFactor = 1000;

// Returns the settings that both routes for a roll share.
Settings AtRoll(const ClassZentrova &zentrova, const Roll &roll) {
    Settings settings;
    settings.farDistance = Global::FormattedToRaw(zentrova, roll.distanceToCore, ParamDefines::FarDistance);
    settings.nearDistance = Global::FormattedToRaw(zentrova, roll.distanceToMax, ParamDefines::NearDistance);
    return settings;
}

// Throws a Fault for a value that doesn't fit a register, because it would stop the writes half-way.
const Settings &RequireRegisters(const Settings &settings) {
    for (const std::int32_t value :
         {settings.farDistance, settings.nearDistance, settings.farVoltage, settings.nearVoltage}) {
        Global::SignedFromUnsigned(value);
    }
    if (settings.diameters) {
        Global::SignedFromUnsigned(settings.diameters->core);
        Global::SignedFromUnsigned(settings.diameters->max);
    }
    return settings;
}

// Deliberate: compares with the presets of Near/Far Distance, but writes the presets of Min/Max Range.
void ApplyRangeMargins(ClassZentrova &zentrova) {
    const std::int32_t beyondFar = zentrova.ParamValue(ParamDefines::FarDistance) + rangeMargin;
    zentrova.ParamValue(ParamDefines::MaxRange, beyondFar > zentrova.ParamPreset(ParamDefines::FarDistance)
                                                    ? zentrova.ParamPreset(ParamDefines::MaxRange)
                                                    : beyondFar);
    const std::int32_t beforeNear = zentrova.ParamValue(ParamDefines::NearDistance) - rangeMargin;
    zentrova.ParamValue(ParamDefines::MinRange, beforeNear < zentrova.ParamPreset(ParamDefines::NearDistance)
                                                    ? zentrova.ParamPreset(ParamDefines::MinRange)
                                                    : beforeNear);
}

} // namespace

namespace WizardCalibration {

Settings ForDistance(const ClassZentrova &zentrova, const Ends &ends) {
    Settings settings;
    settings.outputMode = ParamDefines::LinearMode;
    settings.farDistance = ends.farRaw;
    settings.nearDistance = ends.nearRaw;
    settings.farVoltage = Global::FormattedToRaw(zentrova, ends.farVoltage, ParamDefines::FarVoltage);
    settings.nearVoltage = Global::FormattedToRaw(zentrova, ends.nearVoltage, ParamDefines::NearVoltage);
    return RequireRegisters(settings);
}

Settings ForTorque(const ClassZentrova &zentrova, const Roll &roll) {
    Settings settings = AtRoll(zentrova, roll);
    settings.outputMode = ParamDefines::LinearMode;
    settings.farVoltage =
        TorqueVoltage(ToInt32(ToNumber(ReformatDecimals(roll.coreDiameter, shownDecimals)) * 100),
                      ToInt32(ToNumber(ReformatDecimals(roll.maxDiameter, shownDecimals)) * 100));
    settings.nearVoltage = fullScale;
    return RequireRegisters(settings);
}

Settings ForVelocity(const ClassZentrova &zentrova, const Roll &roll) {
    Settings settings = AtRoll(zentrova, roll);
    settings.outputMode = ParamDefines::HyperbolicMode;
    settings.diameters = {
        .core = Global::FormattedToRaw(zentrova, roll.coreDiameter, ParamDefines::CoreDiameter),
        .max = Global::FormattedToRaw(zentrova, roll.maxDiameter, ParamDefines::MaxDiameter)};
    settings.farVoltage = fullScale;
    settings.nearVoltage = 0;
    return RequireRegisters(settings);
}

void Write(ClassZentrova &zentrova, const Settings &settings, bool save) {
    zentrova.ParamValue(ParamDefines::AnalogOutputMode, settings.outputMode);
    if (settings.diameters) {
        zentrova.ParamValue(ParamDefines::CoreDiameter, settings.diameters->core);
        zentrova.ParamValue(ParamDefines::MaxDiameter, settings.diameters->max);
    }
    zentrova.ParamValue(ParamDefines::FarDistance, settings.farDistance);
    zentrova.ParamValue(ParamDefines::NearDistance, settings.nearDistance);
    ApplyRangeMargins(zentrova);
    zentrova.ParamValue(ParamDefines::FarVoltage, settings.farVoltage);
    zentrova.ParamValue(ParamDefines::NearVoltage, settings.nearVoltage);
    if (save) {
        zentrova.ParamValue(ParamDefines::SaveCommand, ParamDefines::StoreSettings);
    }
}

// The radius grows by half the difference of the diameters.
QString DistanceToMax(const QString &distanceToCore, const QString &coreDiameter,
                      const QString &maxDiameter) {
    return FormatDecimals(ToNumber(distanceToCore) - ToNumber(maxDiameter) / 2 + ToNumber(coreDiameter) / 2,
                          shownDecimals);
}

bool LeavesRoom(const QString &distanceToMax) {
    return ToNumber(distanceToMax) >= leastDistanceToMax;
}

// Calculates in integers: a binary quotient could miss an exact half.
std::int32_t TorqueVoltage(std::int32_t coreDiameter, std::int32_t maxDiameter) {
    if (maxDiameter <= 0) {
        throw Fault::DivisionByZero(QStringLiteral("a roll without a diameter"));
    }
    const std::int64_t product = coreDiameter * torqueFactor;
    const std::int64_t whole = product / maxDiameter;
    const std::int64_t twiceRest = product % maxDiameter * 2;
    const bool up = twiceRest > maxDiameter || (twiceRest == maxDiameter && whole % 2 != 0);
    return ToInt32(static_cast<double>(whole + (up ? 1 : 0)));
}

} // namespace WizardCalibration

} // namespace ztv

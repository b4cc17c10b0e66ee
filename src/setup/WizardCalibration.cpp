#include "setup/WizardCalibration.h"

#include "model/Global.h"
#include "model/ParamDefines.h"
#include "support/Fault.h"
#include "support/Numbers.h"

#include <algorithm>
#include <functional>

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

// Where the values go to and the margins' distances come from: the table, or a list of what would be written.
struct Sink {
    std::function<void(std::int16_t tag, std::int32_t value)> put;
    std::function<std::int32_t(std::int16_t tag)> valueOf;
};

// Deliberate: compares with the presets of Near/Far Distance, but writes the presets of Min/Max Range.
void PutRangeMargins(const ClassZentrova &presets, const Sink &sink) {
    const std::int32_t beyondFar = sink.valueOf(ParamDefines::FarDistance) + rangeMargin;
    sink.put(ParamDefines::MaxRange, beyondFar > presets.ParamPreset(ParamDefines::FarDistance)
                                         ? presets.ParamPreset(ParamDefines::MaxRange)
                                         : beyondFar);
    const std::int32_t beforeNear = sink.valueOf(ParamDefines::NearDistance) - rangeMargin;
    sink.put(ParamDefines::MinRange, beforeNear < presets.ParamPreset(ParamDefines::NearDistance)
                                         ? presets.ParamPreset(ParamDefines::MinRange)
                                         : beforeNear);
}

// In the order in which the sensor must receive the values.
void Put(const ClassZentrova &presets, const Settings &settings, bool save, const Sink &sink) {
    sink.put(ParamDefines::AnalogOutputMode, settings.outputMode);
    if (settings.diameters) {
        sink.put(ParamDefines::CoreDiameter, settings.diameters->core);
        sink.put(ParamDefines::MaxDiameter, settings.diameters->max);
    }
    sink.put(ParamDefines::FarDistance, settings.farDistance);
    sink.put(ParamDefines::NearDistance, settings.nearDistance);
    PutRangeMargins(presets, sink);
    sink.put(ParamDefines::FarVoltage, settings.farVoltage);
    sink.put(ParamDefines::NearVoltage, settings.nearVoltage);
    if (save) {
        sink.put(ParamDefines::SaveCommand, ParamDefines::StoreSettings);
    }
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
    Put(zentrova, settings, save,
        {.put = [&](std::int16_t tag, std::int32_t value) { zentrova.ParamValue(tag, value); },
         .valueOf = [&](std::int16_t tag) { return zentrova.ParamValue(tag); }});
}

std::vector<ParameterValue> ValuesOf(const ClassZentrova &zentrova, const Settings &settings, bool save) {
    std::vector<ParameterValue> values;
    Put(zentrova, settings, save,
        {.put =
             [&](std::int16_t tag, std::int32_t value) {
                 values.push_back({tag, value});
             },
         .valueOf =
             [&](std::int16_t tag) { return std::ranges::find(values, tag, &ParameterValue::tag)->value; }});
    return values;
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

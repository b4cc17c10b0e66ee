#include "model/ParameterRules.h"

#include "model/ParamDefines.h"

namespace ztv {

namespace {

constexpr std::int32_t leastSeparation = 106; // of Min Range and Near Distance, in hundredths of an inch
constexpr QChar inchMark(34);

} // namespace

QString ParameterRules::Conflict(const ClassZentrova &zentrova, std::int16_t tag, std::int64_t raw) {
    using namespace ParamDefines;
    const auto value = [&](std::int16_t other) { return zentrova.ParamValue(other); };
    switch (tag) {
    case MinRange:
        if (raw + leastSeparation > value(NearDistance)) {
            return QStringLiteral("The Min Range must be at least 1.06") + inchMark +
                   QStringLiteral(" less than the Near Distance value. ") +
                   QStringLiteral("Please enter a value of ") +
                   zentrova.FormatRaw(value(NearDistance) - leastSeparation, MinRange) +
                   QStringLiteral(" or lesser for Min Range or increase the Near Distance value.");
        }
        break;
    case MaxRange:
        if (raw < value(FarDistance)) {
            return QStringLiteral("The Max Range must be greater than the Far Distance.");
        }
        break;
    case NearDistance:
        if (raw > value(FarDistance)) {
            return QStringLiteral("The Near Distance must be less than the Far Distance.");
        }
        if (raw - leastSeparation < value(MinRange)) {
            return QStringLiteral("The Near Distance must be at least 1.06") + inchMark +
                   QStringLiteral(" greater than the Min Range value. ") +
                   QStringLiteral("Please enter a value of ") +
                   zentrova.FormatRaw(value(MinRange) + leastSeparation, NearDistance) +
                   QStringLiteral(" or greater for the Near Distance or decrease the Min Range value.");
        }
        break;
    case FarDistance:
        if (raw >= value(NearDistance)) {
            if (raw > value(MaxRange)) {
                return QStringLiteral("The Far Distance must be less than the Max Range Distance.");
            }
        } else if (value(AnalogOutputMode) != HyperbolicMode) { // in that mode the near distance follows
            return QStringLiteral("The Far Distance must be greater than the Near Distance.");
        }
        break;
    case CoreDiameter:
        if (raw >= value(MaxDiameter)) {
            return QStringLiteral("The Core Diameter must be less than than the Max Diameter.");
        }
        break;
    case MaxDiameter:
        if (raw <= value(CoreDiameter)) {
            return QStringLiteral("The Max Diameter must be greater than than the Core Diameter.");
        }
        break;
    default:
        break;
    }
    return {};
}

} // namespace ztv

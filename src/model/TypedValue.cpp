#include "model/TypedValue.h"

#include "model/Global.h"
#include "model/ParamDefines.h"
#include "model/ParameterRules.h"
#include "model/RollGeometry.h"
#include "support/Fault.h"
#include "support/Numbers.h"

namespace ztv {

namespace {

std::optional<std::int32_t> RawValue(const ClassZentrova &zentrova, const QString &text, std::int16_t tag) {
    const QString number = Global::StripUnitSuffix(zentrova, text, tag);
    if (!IsNumeric(number)) {
        return std::nullopt;
    }
    try {
        return Global::FormattedToRaw(zentrova, number, tag);
    } catch (const Fault &) {
        return std::nullopt; // too large for any row
    }
}

} // namespace

TypedValue TypedValue::Of(const ClassZentrova &zentrova, const QString &text, std::int16_t tag) {
    const std::int32_t minimum = zentrova.ParamMin(tag);
    const std::int32_t maximum = zentrova.ParamMax(tag);
    const std::optional<std::int32_t> raw = RawValue(zentrova, text, tag);
    if (!raw || *raw < minimum || *raw > maximum) {
        return {.verdict = Verdict::OutOfRange,
                .refusal = QStringLiteral("Please enter a value between ") +
                           zentrova.FormatRaw(minimum, tag) + QStringLiteral(" and ") +
                           zentrova.FormatRaw(maximum, tag)};
    }
    const QString conflict = ParameterRules::Conflict(zentrova, tag, *raw);
    if (!conflict.isEmpty()) {
        return {.verdict = Verdict::Conflicts, .refusal = conflict};
    }
    return {.raw = *raw};
}

std::optional<std::int32_t> TypedValue::NearDistanceAfter(const ClassZentrova &zentrova, std::int16_t tag) {
    const bool follows = tag == ParamDefines::FarDistance &&
                         zentrova.ParamValue(ParamDefines::AnalogOutputMode) == ParamDefines::HyperbolicMode;
    return follows ? std::optional(RollGeometry::NearDistance(zentrova)) : std::nullopt;
}

} // namespace ztv

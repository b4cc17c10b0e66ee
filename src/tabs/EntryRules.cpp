#include "tabs/EntryRules.h"

#include "model/Global.h"
#include "model/ParamDefines.h"
#include "model/ParameterRules.h"
#include "model/RollGeometry.h"
#include "support/Fault.h"
#include "support/Numbers.h"

#include <optional>

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

EntryRules::EntryRules(ClassZentrova &zentrova, UserDialogs &dialogs)
    : zentrova_(zentrova),
      dialogs_(dialogs) {}

bool EntryRules::ValidateAndWriteText(const QString &text, std::int16_t tag) {
    const std::int32_t minimum = zentrova_.ParamMin(tag);
    const std::int32_t maximum = zentrova_.ParamMax(tag);
    const std::optional<std::int32_t> raw = RawValue(zentrova_, text, tag);
    if (!raw || *raw < minimum || *raw > maximum) {
        dialogs_.OwnedMessageBox(QStringLiteral("Please enter a value between ") +
                                     zentrova_.FormatRaw(minimum, tag) + QStringLiteral(" and ") +
                                     zentrova_.FormatRaw(maximum, tag),
                                 {.icon = BoxIcon::None, .buttons = BoxButtons::Ok}, QString());
        return false;
    }
    if (!CheckParamRelation(tag, *raw)) {
        return false;
    }
    zentrova_.ParamValue(tag, *raw);
    Q_EMIT Written(tag, zentrova_.FormatRaw(*raw, tag));
    if (tag == ParamDefines::FarDistance &&
        zentrova_.ParamValue(ParamDefines::AnalogOutputMode) == ParamDefines::HyperbolicMode) {
        zentrova_.ParamValue(ParamDefines::NearDistance, RollGeometry::NearDistance(zentrova_));
    }
    return true;
}

bool EntryRules::CheckParamRelation(std::int16_t tag, std::int32_t raw) {
    const QString conflict = ParameterRules::Conflict(zentrova_, tag, raw);
    if (conflict.isEmpty()) {
        return true;
    }
    Warn(dialogs_, conflict, QStringLiteral("Invalid Value"));
    return false;
}

} // namespace ztv

#include "tabs/EntryRules.h"

#include "model/Global.h"
#include "model/ParamDefines.h"
#include "model/RollGeometry.h"
#include "support/Fault.h"
#include "support/Numbers.h"

#include <optional>

namespace {

constexpr std::int32_t leastSeparation = 106; // of Min Range and Near Distance, in hundredths of an inch
constexpr QChar inchMark(34);

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

// Why a raw value doesn't fit with the other parameters; empty when it does.
QString Conflict(const ClassZentrova &zentrova, std::int16_t tag, std::int64_t raw) {
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
        } else if (value(AnalogOutputMode) != HyperbolicMode) { // where the near distance would follow it
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
    const QString conflict = Conflict(zentrova_, tag, raw);
    if (conflict.isEmpty()) {
        return true;
    }
    dialogs_.OwnedMessageBox(conflict, {.icon = BoxIcon::Exclamation, .buttons = BoxButtons::Ok},
                             QStringLiteral("Invalid Value"));
    return false;
}

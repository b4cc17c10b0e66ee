#include "tabs/EntryRules.h"

#include "model/ParamDefines.h"
#include "model/ParameterRules.h"
#include "model/TypedValue.h"

#include <optional>

namespace ztv {

EntryRules::EntryRules(ClassZentrova &zentrova, UserDialogs &dialogs)
    : zentrova_(zentrova),
      dialogs_(dialogs) {}

bool EntryRules::ValidateAndWriteText(const QString &text, std::int16_t tag) {
    const TypedValue typed = TypedValue::Of(zentrova_, text, tag);
    switch (typed.verdict) {
    case TypedValue::Verdict::OutOfRange:
        dialogs_.OwnedMessageBox(typed.refusal, {.icon = BoxIcon::None, .buttons = BoxButtons::Ok},
                                 QString());
        return false;
    case TypedValue::Verdict::Conflicts:
        ShowConflict(typed.refusal);
        return false;
    case TypedValue::Verdict::Fits:
        break;
    }
    zentrova_.ParamValue(tag, typed.raw);
    Q_EMIT Written(tag, zentrova_.FormatRaw(typed.raw, tag));
    if (const std::optional<std::int32_t> near = TypedValue::NearDistanceAfter(zentrova_, tag)) {
        zentrova_.ParamValue(ParamDefines::NearDistance, *near);
    }
    return true;
}

bool EntryRules::CheckParamRelation(std::int16_t tag, std::int32_t raw) {
    const QString conflict = ParameterRules::Conflict(zentrova_, tag, raw);
    if (conflict.isEmpty()) {
        return true;
    }
    ShowConflict(conflict);
    return false;
}

void EntryRules::ShowConflict(const QString &conflict) {
    Warn(dialogs_, conflict, QStringLiteral("Invalid Value"));
}

} // namespace ztv

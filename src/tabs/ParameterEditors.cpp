#include "tabs/ParameterEditors.h"

#include "model/ParamDefines.h"
#include "model/UnitClass.h"
#include "support/Fault.h"
#include "support/Numbers.h"

namespace ztv {

namespace {

// Deliberate: the list opens on the value of the parameter whose number is the row's index plus one, not of
// the row's own parameter. The two agree only while all parameters are shown in the order of their numbers.
std::int16_t StartsBy(int row) {
    return ToInt16(row + 1);
}

bool HasOutputDialog(std::int16_t tag) {
    return tag == ParamDefines::ManualOutput ||
           (tag >= ParamDefines::FirstRawOutput && tag <= ParamDefines::LastRawOutput);
}

// An unknown unit is offered as a list, although its values are shown as numbers.
bool IsTyped(std::int16_t unitCode) {
    return unitCode == 0 || ClassOfUnit(unitCode) == UnitClass::Suffix;
}

// "parameter 2, Serial Number"
QString Naming(const ClassZentrova &zentrova, std::int16_t tag) {
    return QStringLiteral("parameter %1, %2").arg(tag).arg(zentrova.ParamName(tag));
}

} // namespace

namespace ParameterEditors {

Kind KindOf(const ClassZentrova &zentrova, std::int16_t tag) {
    if (zentrova.ParamReadOnly(tag)) {
        return Kind::None;
    }
    if (HasOutputDialog(tag)) {
        return Kind::OutputDialog;
    }
    return IsTyped(zentrova.ParamUnits(tag)) ? Kind::Text : Kind::Choice;
}

Choice ChoiceOf(const ClassZentrova &zentrova, std::int16_t tag, int row) {
    Choice choice;
    for (std::int32_t value = zentrova.ParamMin(tag); value <= zentrova.ParamMax(tag); ++value) {
        choice.texts.push_back(zentrova.ParamLookUp(zentrova.ParamUnits(tag), value));
    }
    choice.start = zentrova.ParamValue(StartsBy(row));
    return choice;
}

QString WhyItCannotOpen(const ClassZentrova &zentrova, std::int16_t tag, int row) {
    const std::int16_t by = StartsBy(row);
    const std::int32_t value = zentrova.ParamValue(by);
    if (by == tag) {
        return QStringLiteral("The list of %1 can't be opened: the value %2 isn't in it.\n\n"
                              "Re-initialize the sensor, or open a settings file, to give it one that is.")
            .arg(zentrova.ParamName(tag))
            .arg(value);
    }
    return QStringLiteral(
               "The list of %1 can't be opened here. In row %2 it starts with the value of %3, and "
               "that is %4, which isn't in the list.\n\n"
               "Choose \"All\" and click \"Tag\" until the numbers rise: then it starts with its "
               "own value.")
        .arg(zentrova.ParamName(tag))
        .arg(by)
        .arg(Naming(zentrova, by))
        .arg(value);
}

QString NoteOf(const ClassZentrova &zentrova, std::int16_t tag, int row) {
    const std::int16_t by = StartsBy(row);
    if (by == tag || KindOf(zentrova, tag) != Kind::Choice) {
        return {};
    }
    try {
        const Choice choice = ChoiceOf(zentrova, tag, row);
        if (!choice.CanOpen()) {
            return WhyItCannotOpen(zentrova, tag, row);
        }
        return QStringLiteral(
                   "The list of this row starts with \"%1\", by the value of %2, since this is row "
                   "%3.\nChoose a text before you leave it, or press Escape to keep the value.")
            .arg(choice.texts[choice.start], Naming(zentrova, by), QString::number(by));
    } catch (const Fault &) {
        return {}; // the parameter has no list
    }
}

} // namespace ParameterEditors

} // namespace ztv

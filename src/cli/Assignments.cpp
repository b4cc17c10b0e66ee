#include "cli/Assignments.h"

#include "cli/DidYouMean.h"
#include "cli/Failure.h"
#include "cli/ParameterNames.h"
#include "model/ParamDefines.h"
#include "model/UnitClass.h"

#include <algorithm>
#include <optional>

namespace ztv {

namespace {

Failure WrongUse(const QString &text) {
    return {ExitStatus::WrongUse, text};
}

// Returns the texts of a row's values, from its least on.
QStringList TextsOf(const ClassZentrova &zentrova, std::int16_t tag) {
    QStringList texts;
    for (std::int32_t value = zentrova.ParamMin(tag); value <= zentrova.ParamMax(tag); ++value) {
        texts.append(zentrova.ParamLookUp(zentrova.ParamUnits(tag), value));
    }
    return texts;
}

Failure NoSuchText(const QString &text, const QString &name, const QStringList &texts) {
    const std::optional<QString> meant = NearestName(text, texts);
    return {ExitStatus::Refused,
            QStringLiteral("%1: \"%2\" is no value: ").arg(name, text) +
                (meant ? QStringLiteral("did you mean \"%1\"?").arg(*meant)
                       : QStringLiteral("use one of %1").arg(texts.join(QStringLiteral(", "))))};
}

std::int32_t ValueOfText(const QString &text, std::int16_t tag, const ClassZentrova &zentrova) {
    const QStringList texts = TextsOf(zentrova, tag);
    const QString wanted = text.simplified();
    for (qsizetype index = 0; index < texts.size(); ++index) { // first: a baud rate is a number, too
        if (texts[index].compare(wanted, Qt::CaseInsensitive) == 0) {
            return zentrova.ParamMin(tag) + static_cast<std::int32_t>(index);
        }
    }
    bool isNumber = false;
    const std::int32_t value = wanted.toInt(&isNumber);
    if (!isNumber || value < zentrova.ParamMin(tag) || value > zentrova.ParamMax(tag)) {
        throw NoSuchText(wanted, zentrova.ParamName(tag), texts);
    }
    return value;
}

Assignment AssignmentOf(const QString &word, const ClassZentrova &zentrova) {
    const qsizetype sign = word.indexOf(u'=');
    if (sign < 0) {
        throw WrongUse(
            QStringLiteral("\"%1\" assigns nothing; write PARAMETER=VALUE, such as \"Near Distance=12.5\"")
                .arg(word));
    }
    const std::int16_t tag = TagOf(word.left(sign), zentrova);
    if (ClassZentrova::IsCommand(tag)) {
        const bool saves = tag == ParamDefines::SaveCommand;
        throw WrongUse(
            QStringLiteral("\"%1\" is a command: use \"ztv-ctl %2\"")
                .arg(zentrova.ParamName(tag), saves ? QStringLiteral("store") : QStringLiteral("reinit")));
    }
    return {.tag = tag, .text = word.mid(sign + 1)};
}

void RejectRepeated(const std::vector<Assignment> &assignments, const ClassZentrova &zentrova) {
    for (auto later = assignments.begin(); later != assignments.end(); ++later) {
        if (std::ranges::find(assignments.begin(), later, later->tag, &Assignment::tag) != later) {
            throw WrongUse(QStringLiteral("\"%1\" is given twice; give it one value")
                               .arg(zentrova.ParamName(later->tag)));
        }
    }
}

void UnderstandText(Assignment &assignment, const ClassZentrova &zentrova) {
    const std::int16_t tag = assignment.tag;
    if (zentrova.ParamReadOnly(tag)) {
        throw Failure(ExitStatus::Refused,
                      QStringLiteral("\"%1\" can only be read").arg(zentrova.ParamName(tag)));
    }
    if (ClassOfUnit(zentrova.ParamUnits(tag)) == UnitClass::TextValued) {
        assignment.text = QString::number(ValueOfText(assignment.text, tag, zentrova));
    }
}

} // namespace

std::vector<Assignment> AssignmentsOf(const QStringList &words, const ClassZentrova &zentrova) {
    std::vector<Assignment> assignments;
    for (const QString &word : words) {
        assignments.push_back(AssignmentOf(word, zentrova));
    }
    RejectRepeated(assignments, zentrova);
    for (Assignment &assignment : assignments) {
        UnderstandText(assignment, zentrova);
    }
    return assignments;
}

} // namespace ztv

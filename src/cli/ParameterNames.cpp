#include "cli/ParameterNames.h"

#include "cli/DidYouMean.h"
#include "cli/Failure.h"

#include <QStringList>
#include <optional>
#include <vector>

namespace ztv {

namespace {

constexpr std::int16_t firstTag = 1; // 0 is reserved

std::optional<QString> ProbablyMeant(const QString &text, const ClassZentrova &zentrova) {
    QStringList names;
    for (std::int16_t tag = firstTag; tag < zentrova.ParamCount(); ++tag) {
        names.append(zentrova.ParamName(tag));
    }
    return NearestName(text, names);
}

std::int16_t TagOfNumber(int number, const ClassZentrova &zentrova) {
    if (number < firstTag || number >= zentrova.ParamCount()) {
        throw Failure(ExitStatus::WrongUse, QStringLiteral("There is no parameter %1; they are %2 to %3")
                                                .arg(number)
                                                .arg(firstTag)
                                                .arg(zentrova.ParamCount() - 1));
    }
    return static_cast<std::int16_t>(number);
}

} // namespace

std::int16_t TagOf(const QString &text, const ClassZentrova &zentrova) {
    const QString wanted = text.simplified();
    bool isNumber = false;
    if (const int number = wanted.toInt(&isNumber); isNumber) {
        return TagOfNumber(number, zentrova);
    }
    std::vector<std::int16_t> beginWith;
    for (std::int16_t tag = firstTag; tag < zentrova.ParamCount(); ++tag) {
        const QString name = zentrova.ParamName(tag);
        if (name.compare(wanted, Qt::CaseInsensitive) == 0) {
            return tag;
        }
        if (!wanted.isEmpty() && name.startsWith(wanted, Qt::CaseInsensitive)) {
            beginWith.push_back(tag);
        }
    }
    if (beginWith.size() == 1) {
        return beginWith.front();
    }
    if (!beginWith.empty()) {
        QStringList names;
        for (const std::int16_t tag : beginWith) {
            names.append(u'"' + zentrova.ParamName(tag) + u'"');
        }
        throw Failure(ExitStatus::WrongUse,
                      QStringLiteral("\"%1\" may be %2").arg(text, names.join(QStringLiteral(" or "))));
    }
    const std::optional<QString> meant = ProbablyMeant(wanted, zentrova);
    throw Failure(
        ExitStatus::WrongUse,
        meant ? QStringLiteral("There is no parameter \"%1\": did you mean \"%2\"?").arg(text, *meant)
              : QStringLiteral("There is no parameter \"%1\"; \"ztv-ctl parameters\" lists them").arg(text));
}

} // namespace ztv

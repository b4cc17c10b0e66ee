#include "model/ValueFormat.h"

#include "model/UnitClass.h"
#include "model/UnitTable.h"
#include "support/Numbers.h"

#include <algorithm>

namespace ztv {

namespace {

bool IsScaled(std::int16_t decimalPlaces) {
    return decimalPlaces >= 1 && decimalPlaces <= 3;
}

} // namespace

std::int32_t ValueFormat::Parse(const QString &text) const {
    ToNumber(text); // rejects texts like ".1.5", which are numeric only without their first point
    return Unscaled(ToDecimals(text)).value();
}

QString ValueFormat::WithUnits(const QString &number) const {
    switch (ClassOfUnit(row_.unitCode)) {
    case UnitClass::Suffix:
        return number + units_.Text(row_.unitCode, 0);
    case UnitClass::TextValued:
        return units_.Text(row_.unitCode, std::min(ToInt32(ToNumber(number)), row_.maximum));
    case UnitClass::None:
        break;
    }
    return number;
}

QString ValueFormat::WithoutSuffix(const QString &text) const {
    if (ClassOfUnit(row_.unitCode) != UnitClass::Suffix) {
        return text;
    }
    const bool matches = text.right(1).toUpper() == units_.Text(row_.unitCode, 0).toUpper();
    return matches ? text.chopped(std::min<qsizetype>(1, text.size())) : text;
}

QString ValueFormat::ToDecimals(const QString &text) const {
    return ReformatDecimals(text, IsScaled(row_.decimalPlaces) ? row_.decimalPlaces : 0);
}

QString ValueFormat::Scaled(std::int32_t raw, std::int16_t decimalPlaces) {
    if (!IsScaled(decimalPlaces)) {
        return QString::number(raw);
    }
    constexpr double divisors[] = {1.0, 10.0, 100.0, 1000.0};
    return FormatDecimals(raw / divisors[decimalPlaces], decimalPlaces);
}

std::optional<std::int32_t> ValueFormat::Unscaled(const QString &text) {
    if (text.isEmpty()) {
        return std::nullopt;
    }
    QString digits = text;
    if (const qsizetype point = digits.indexOf(u'.'); point >= 0) {
        digits.remove(point, 1);
    }
    return ToInt32(ToNumber(digits));
}

} // namespace ztv

#include "model/Global.h"

#include "model/ClassZentrova.h"
#include "model/UnitClass.h"
#include "support/Numbers.h"

#include <algorithm>

namespace ztv {

namespace {

bool IsScaled(std::int16_t decimalPlaces) {
    return decimalPlaces >= 1 && decimalPlaces <= 3;
}

} // namespace

namespace Global {

QString RawToFormatted(std::int32_t raw, std::int16_t decimalPlaces) {
    if (!IsScaled(decimalPlaces)) {
        return QString::number(raw);
    }
    constexpr double divisors[] = {1.0, 10.0, 100.0, 1000.0};
    return FormatDecimals(raw / divisors[decimalPlaces], decimalPlaces);
}

QString ApplyUnits(const ClassZentrova &zentrova, const QString &number, std::int16_t unitCode,
                   std::int32_t maximum) {
    switch (ClassOfUnit(unitCode)) {
    case UnitClass::Suffix:
        return number + zentrova.ParamLookUp(unitCode, 0);
    case UnitClass::TextValued:
        return zentrova.ParamLookUp(unitCode, std::min(ToInt32(ToNumber(number)), maximum));
    case UnitClass::None:
        break;
    }
    return number;
}

std::int32_t FormattedToRaw(const ClassZentrova &zentrova, const QString &text, std::int16_t Tag) {
    ToNumber(text); // rejects texts like ".1.5", which are numeric only without their first point
    return RemoveDecimalPoint(FormatToDecimals(zentrova, text, Tag)).value();
}

QString FormatToDecimals(const ClassZentrova &zentrova, const QString &text, std::int16_t Tag) {
    const std::int16_t places = zentrova.ParamDecimalPlaces(Tag);
    return ReformatDecimals(text, IsScaled(places) ? places : 0);
}

std::optional<std::int32_t> RemoveDecimalPoint(const QString &text) {
    if (text.isEmpty()) {
        return std::nullopt;
    }
    QString digits = text;
    if (const qsizetype point = digits.indexOf(u'.'); point >= 0) {
        digits.remove(point, 1);
    }
    return ToInt32(ToNumber(digits));
}

QString StripUnitSuffix(const ClassZentrova &zentrova, const QString &text, std::int16_t Tag) {
    const std::int16_t unitCode = zentrova.ParamUnits(Tag);
    if (ClassOfUnit(unitCode) != UnitClass::Suffix) {
        return text;
    }
    const bool matches = text.right(1).toUpper() == zentrova.ParamLookUp(unitCode, 0).toUpper();
    return matches ? text.chopped(std::min<qsizetype>(1, text.size())) : text;
}

std::int16_t SignedFromUnsigned(std::int32_t value) {
    return ToInt16(value <= 32767 ? value : value - 65536.0);
}

std::int32_t UnsignedFromSigned(std::int16_t word) {
    return word >= 0 ? word : word + 65536;
}

double InterpolateClipped(double x, double x0, double x1, double y0, double y1) {
    if (x <= x0) {
        return y0;
    }
    if (x >= x1) {
        return y1;
    }
    return y0 + (y1 - y0) * ((x - x0) / (x1 - x0));
}

} // namespace Global

} // namespace ztv

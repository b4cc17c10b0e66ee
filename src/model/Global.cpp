#include "model/Global.h"

#include "model/ClassZentrova.h"
#include "model/ValueFormat.h"
#include "support/Numbers.h"

namespace ztv {

namespace Global {

QString RawToFormatted(std::int32_t raw, std::int16_t decimalPlaces) {
    return ValueFormat::Scaled(raw, decimalPlaces);
}

QString ApplyUnits(const ClassZentrova &zentrova, const QString &number, std::int16_t unitCode,
                   std::int32_t maximum) {
    return ValueFormat({.unitCode = unitCode, .maximum = maximum}, zentrova.Units()).WithUnits(number);
}

std::int32_t FormattedToRaw(const ClassZentrova &zentrova, const QString &text, std::int16_t Tag) {
    return zentrova.FormatOf(Tag).Parse(text);
}

QString FormatToDecimals(const ClassZentrova &zentrova, const QString &text, std::int16_t Tag) {
    return zentrova.FormatOf(Tag).ToDecimals(text);
}

std::optional<std::int32_t> RemoveDecimalPoint(const QString &text) {
    return ValueFormat::Unscaled(text);
}

QString StripUnitSuffix(const ClassZentrova &zentrova, const QString &text, std::int16_t Tag) {
    return zentrova.FormatOf(Tag).WithoutSuffix(text);
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

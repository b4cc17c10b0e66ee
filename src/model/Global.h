#pragma once

#include <QString>
#include <cstdint>
#include <optional>

class ClassZentrova;

// The conversions between the three forms of a value: the register on the wire, the raw number in the
// table, and the text that the user sees and types.
namespace Global {

// The number text of a raw value: scaled for 1 to 3 decimal places, plain for any other.
QString RawToFormatted(std::int32_t raw, std::int16_t decimalPlaces);

// The number text with its unit: a suffix behind it, or the text that stands for the number, where a
// number above `maximum` counts as `maximum`.
QString ApplyUnits(const ClassZentrova &zentrova, const QString &number, std::int16_t unitCode,
                   std::int32_t maximum);

// The raw value of a numeric text typed for a row. Fault (conversion, overflow) for any other text.
std::int32_t FormattedToRaw(const ClassZentrova &zentrova, const QString &text, std::int16_t Tag);

// A numeric text with exactly the row's decimal places.
QString FormatToDecimals(const ClassZentrova &zentrova, const QString &text, std::int16_t Tag);

// The whole number that is left of a numeric text without its decimal point; nothing for an empty text.
std::optional<std::int32_t> RemoveDecimalPoint(const QString &text);

// The text without the row's one-character unit suffix, in either case of letters.
QString StripUnitSuffix(const ClassZentrova &zentrova, const QString &text, std::int16_t Tag);

// A raw value as a two's complement register word. Fault (overflow) when it doesn't fit 16 bits.
std::int16_t SignedFromUnsigned(std::int32_t value);

// A register word as a number from 0 to 65535.
std::int32_t UnsignedFromSigned(std::int16_t word);

// The linear map of x0..x1 onto y0..y1, clipped at both ends. With x1 not above x0 it is a step.
double InterpolateClipped(double x, double x0, double x1, double y0, double y1);

} // namespace Global

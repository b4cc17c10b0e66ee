#pragma once

#include <QString>
#include <cstdint>
#include <optional>

namespace ztv {

class ClassZentrova;

// Converts between the three forms of a value: the register on the wire, the raw number in the table, and the
// text that the user sees and types. The texts are the work of the row's ValueFormat.
namespace Global {

// Returns the number text of a raw value: scaled for 1 to 3 decimal places, plain for any other.
QString RawToFormatted(std::int32_t raw, std::int16_t decimalPlaces);

// Returns the number text with its unit: followed by a suffix, or replaced by the text for the number. A
// number above `maximum` then counts as `maximum`.
QString ApplyUnits(const ClassZentrova &zentrova, const QString &number, std::int16_t unitCode,
                   std::int32_t maximum);

// Returns the raw value of a numeric text typed for a row. Fault (conversion, overflow) for any other text.
std::int32_t FormattedToRaw(const ClassZentrova &zentrova, const QString &text, std::int16_t Tag);

// Returns a numeric text with exactly the row's decimal places.
QString FormatToDecimals(const ClassZentrova &zentrova, const QString &text, std::int16_t Tag);

// Returns the whole number that a numeric text gives without its decimal point; nothing for an empty text.
std::optional<std::int32_t> RemoveDecimalPoint(const QString &text);

// Removes the row's one-character unit suffix from a text, in either case of letters.
QString StripUnitSuffix(const ClassZentrova &zentrova, const QString &text, std::int16_t Tag);

// Converts a raw value to a two's complement register word. Fault (overflow) when it doesn't fit 16 bits.
std::int16_t SignedFromUnsigned(std::int32_t value);

// Converts a register word to a number from 0 to 65535.
std::int32_t UnsignedFromSigned(std::int16_t word);

// Maps x0..x1 linearly onto y0..y1, clipped at both ends. With x1 not above x0 it is a step.
double InterpolateClipped(double x, double x0, double x1, double y0, double y1);

} // namespace Global

} // namespace ztv

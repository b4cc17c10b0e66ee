#pragma once

#include <QString>
#include <cstdint>

namespace ztv {

// Numbers and their texts. Always in the C locale: "." is the decimal separator whatever the machine's locale
// is.

// Round to a whole number, a half to the even neighbour. Fault (overflow) when it doesn't fit.
std::int16_t ToInt16(double value);
std::int32_t ToInt32(double value);
std::uint8_t ToUInt8(double value);

// Returns the text without the blanks around it; only the space character counts.
QStringView TrimBlanks(QStringView text);

// Returns true for optional blanks around an optional sign, digits with at most one ".", and an optional
// exponent, if the value is within the range of a double.
bool IsNumeric(const QString &text);

// Returns the value of a numeric text. Fault (conversion) for any other text.
double ToNumber(const QString &text);

// Returns `value` with at least one digit before the point and exactly `decimals` after it. Rounds the
// decimal text of 15 significant digits, a tie away from zero, so that 1.005 gives "1.01".
QString FormatDecimals(double value, int decimals);

// Formats a numeric text with FormatDecimals; returns any other text unchanged.
QString ReformatDecimals(const QString &text, int decimals);

} // namespace ztv

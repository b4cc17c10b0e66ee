#pragma once

#include <QString>
#include <cstdint>

// Numbers and their texts. Always the C locale: "." is the decimal separator whatever the machine says.

// Narrow to a whole number, a half going to the even neighbour. Fault (overflow) when it doesn't fit.
std::int16_t ToInt16(double value);
std::int32_t ToInt32(double value);
std::uint8_t ToUInt8(double value);

// The text without the blanks around it; only the blank character counts.
QStringView TrimBlanks(QStringView text);

// True for optional blanks around an optional sign, digits with at most one ".", and an optional
// exponent, whose value a double can hold.
bool IsNumeric(const QString &text);

// The value of a numeric text. Fault (conversion) for any other text.
double ToNumber(const QString &text);

// `value` with at least one digit before the point and exactly `decimals` after it. Rounds the decimal
// text of 15 significant digits, a tie going away from zero, so that 1.005 gives "1.01".
QString FormatDecimals(double value, int decimals);

// A numeric text through FormatDecimals; any other text unchanged.
QString ReformatDecimals(const QString &text, int decimals);

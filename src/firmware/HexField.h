#pragma once

#include <QByteArrayView>
#include <algorithm>
#include <array>
#include <cstdint>

namespace ztv {

// Hexadecimal fields of a line, by position. Positions count from 1. Inline, since a conversion spends most
// of its time here.
namespace HexField {

constexpr std::uint8_t notADigit = 16;

constexpr std::array<std::uint8_t, 256> digitValues = [] {
    std::array<std::uint8_t, 256> values{};
    values.fill(notADigit);
    for (std::uint8_t digit = 0; digit < 10; ++digit) {
        values['0' + digit] = digit;
    }
    for (std::uint8_t letter = 0; letter < 6; ++letter) {
        const auto value = static_cast<std::uint8_t>(10 + letter);
        values['A' + letter] = value;
        values['a' + letter] = value;
    }
    return values;
}();

// Returns the value of at most `width` digits from `position` on, in either case. A character that isn't a
// digit, or the end of the line, ends the field: the value is that of its leading digits, 0 if there is none.
// REQUIRES: `width` is at most 8.
inline std::uint32_t Value(QByteArrayView line, qsizetype position, int width) {
    const qsizetype end = std::min<qsizetype>(line.size(), position - 1 + width);
    std::uint32_t value = 0;
    for (qsizetype index = position - 1; index < end; ++index) {
        const std::uint8_t digit = digitValues[static_cast<std::uint8_t>(line.data()[index])];
        if (digit == notADigit) {
            break;
        }
        value = value * 16 + digit;
    }
    return value;
}

// Writes the low `width` upper-case digits of the value. Returns the place after them.
inline char *Put(char *to, std::uint32_t value, int width) {
    for (int digit = width - 1; digit >= 0; --digit) {
        to[digit] = "0123456789ABCDEF"[value % 16];
        value /= 16;
    }
    return to + width;
}

} // namespace HexField

} // namespace ztv

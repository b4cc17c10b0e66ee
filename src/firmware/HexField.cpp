#include "firmware/HexField.h"

#include <algorithm>
#include <array>

namespace {

constexpr std::uint8_t notADigit = 16;

constexpr std::array<std::uint8_t, 256> MakeDigitValues() {
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
}

constexpr std::array<std::uint8_t, 256> digitValues = MakeDigitValues();

} // namespace

std::uint32_t HexField::Value(QByteArrayView line, qsizetype position, int width) {
    const qsizetype end = std::min<qsizetype>(line.size(), position - 1 + width);
    std::uint32_t value = 0;
    for (qsizetype index = position - 1; index < end; ++index) {
        const std::uint8_t digit = digitValues[static_cast<std::uint8_t>(line[index])];
        if (digit == notADigit) {
            break;
        }
        value = value * 16 + digit;
    }
    return value;
}

char *HexField::Put(char *to, std::uint32_t value, int width) {
    for (int digit = width - 1; digit >= 0; --digit) {
        to[digit] = "0123456789ABCDEF"[value % 16];
        value /= 16;
    }
    return to + width;
}

// Fuzzes numeric texts and the narrowing of numbers. An input is the number of decimals, then a text; or a
// further byte, then the eight bytes of a number.

#include "support/Numbers.h"

#include "fuzz/Harness.h"
#include "support/Fault.h"

#include <QRegularExpression>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <optional>

namespace ztv {

namespace {

__extension__ using Wide = __int128;

constexpr double largestInFifteenDigits = 1.79769313486231e308;

// The number as the C library reads it, independently of the program. The locale is always "C".
std::optional<double> ByTheCLibrary(const QString &text) {
    static const QRegularExpression shape(
        QStringLiteral("\\A *[+-]?([0-9]+\\.?[0-9]*|\\.[0-9]+)([eE][+-]?[0-9]+)? *\\z"));
    if (!shape.match(text).hasMatch()) {
        return std::nullopt;
    }
    const double value = std::strtod(text.toLatin1().constData(), nullptr);
    return std::isinf(value) ? std::nullopt : std::optional(value);
}

QByteArray TextOf(Wide value) {
    QByteArray digits;
    do {
        digits.prepend(static_cast<char>('0' + static_cast<int>(value % 10)));
        value /= 10;
    } while (value != 0);
    return digits;
}

// Formats by whole-number arithmetic: takes fifteen significant digits of the exact decimal text, with ties
// away from zero, then scales and rounds once more.
QString ByWholeNumbers(double value, int decimals) {
    constexpr int mostDigits = 767; // enough for the exact text of any double
    char scientific[mostDigits + 20];
    std::snprintf(scientific, sizeof scientific, "%.*e", mostDigits, std::abs(value));
    const QByteArray text(scientific);
    const qsizetype mark = text.indexOf('e');
    Wide number = (text.left(1) + text.mid(2, 14)).toLongLong() + (text[16] >= '5' ? 1 : 0);
    const int shift = text.mid(mark + 1).toInt() - 14 + decimals;
    QByteArray zeros;
    if (shift >= 0) {
        zeros = QByteArray(number == 0 ? 0 : shift, '0');
    } else if (shift < -16) {
        number = 0;
    } else {
        Wide unit = 1;
        for (int k = 0; k < -shift; ++k) {
            unit *= 10;
        }
        number = (number + unit / 2) / unit;
    }
    QByteArray digits = TextOf(number) + zeros;
    digits = digits.rightJustified(decimals + 1, '0');
    if (decimals > 0) {
        digits.insert(digits.size() - decimals, '.');
    }
    return QString::fromLatin1((value < 0 && number != 0 ? "-" : "") + digits);
}

template <typename Integer>
void CheckNarrowing(double value, Integer (*narrow)(double)) {
    double whole = std::floor(value);
    const double rest = value - whole;
    if (rest > 0.5 || (rest == 0.5 && std::fmod(whole, 2) != 0)) {
        whole += 1;
    }
    const bool fits =
        whole >= std::numeric_limits<Integer>::min() && whole <= std::numeric_limits<Integer>::max();
    try {
        const Integer narrowed = narrow(value);
        REQUIRE(fits && narrowed == whole);
    } catch (const Fault &fault) {
        REQUIRE(!fits && fault.Cause() == Fault::Kind::Overflow);
    }
}

void CheckNumber(double value, int decimals) {
    CheckNarrowing<std::int16_t>(value, ToInt16);
    CheckNarrowing<std::int32_t>(value, ToInt32);
    CheckNarrowing<std::uint8_t>(value, ToUInt8);
    if (!std::isfinite(value)) {
        return; // no text yields infinity or NaN
    }
    const QString text = FormatDecimals(value, decimals);
    REQUIRE(text == ByWholeNumbers(value, decimals));
    REQUIRE(IsNumeric(text) || std::abs(value) > largestInFifteenDigits);
}

void CheckText(const QString &text, int decimals) {
    const std::optional<double> wanted = ByTheCLibrary(text);
    REQUIRE(IsNumeric(text) == wanted.has_value());
    try {
        const double value = ToNumber(text);
        REQUIRE(wanted == value);
        REQUIRE(ReformatDecimals(text, decimals) == FormatDecimals(value, decimals));
        CheckNumber(value, decimals);
    } catch (const Fault &fault) {
        REQUIRE(!wanted && fault.Cause() == Fault::Kind::Conversion);
        REQUIRE(ReformatDecimals(text, decimals) == text);
    }
    const QString once = ReformatDecimals(text, decimals);
    REQUIRE(ReformatDecimals(once, decimals) == once);
    const QStringView trimmed = TrimBlanks(text);
    REQUIRE(!trimmed.startsWith(u' ') && !trimmed.endsWith(u' ') && text.contains(trimmed));
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    Fuzz::Input input(data, size);
    const std::uint8_t kind = input.Byte();
    const int decimals = kind % 10;
    if (kind < 128) {
        CheckText(QString::fromUtf8(input.Rest()), decimals);
        return 0;
    }
    double value = 0;
    const QByteArray bytes = input.Take(sizeof value).leftJustified(sizeof value, '\0');
    std::memcpy(&value, bytes.constData(), sizeof value);
    CheckNumber(value, decimals);
    return 0;
}

} // namespace ztv

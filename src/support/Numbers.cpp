#include "support/Numbers.h"

#include "support/Fault.h"

#include <charconv>
#include <cmath>
#include <limits>

namespace ztv {

namespace {

template <typename Integer>
Integer Narrow(double value) {
    const double whole = std::nearbyint(value); // the default rounding mode takes ties to even
    if (!(whole >= std::numeric_limits<Integer>::min() && whole <= std::numeric_limits<Integer>::max())) {
        throw Fault::Overflow(QStringLiteral("%1 doesn't fit %2 bits")
                                  .arg(value, 0, 'g', 15)
                                  .arg(std::numeric_limits<Integer>::digits +
                                       (std::numeric_limits<Integer>::is_signed ? 1 : 0)));
    }
    return static_cast<Integer>(whole);
}

bool IsDigit(QChar c) {
    return c >= u'0' && c <= u'9';
}

// Moves past a run of digits and returns how many there were.
qsizetype SkipDigits(QStringView text, qsizetype &at) {
    const qsizetype start = at;
    while (at < text.size() && IsDigit(text[at])) {
        ++at;
    }
    return at - start;
}

void SkipSign(QStringView text, qsizetype &at) {
    if (at < text.size() && (text[at] == u'+' || text[at] == u'-')) {
        ++at;
    }
}

bool HasNumberShape(QStringView text) {
    qsizetype at = 0;
    SkipSign(text, at);
    qsizetype digits = SkipDigits(text, at);
    if (at < text.size() && text[at] == u'.') {
        ++at;
        digits += SkipDigits(text, at);
    }
    if (digits == 0) {
        return false;
    }
    if (at < text.size() && (text[at] == u'e' || text[at] == u'E')) {
        ++at;
        SkipSign(text, at);
        if (SkipDigits(text, at) == 0) {
            return false;
        }
    }
    return at == text.size();
}

bool Parse(const QString &text, double &value) {
    const QStringView trimmed = TrimBlanks(text);
    if (!HasNumberShape(trimmed)) {
        return false;
    }
    QByteArray digits = trimmed.toLatin1();
    if (digits.startsWith('+')) {
        digits.remove(0, 1); // std::from_chars doesn't accept it
    }
    const std::errc error = std::from_chars(digits.constBegin(), digits.constEnd(), value).ec;
    if (error == std::errc::result_out_of_range) {
        value = trimmed.toDouble(); // infinity, or 0 for a value too small to represent
        return std::isfinite(value);
    }
    return error == std::errc();
}

// Adds one to the last digit of a text of digits; the text grows where all are 9.
void Increment(QByteArray &digits) {
    for (qsizetype i = digits.size() - 1; i >= 0; --i) {
        if (digits[i] != '9') {
            ++digits[i];
            return;
        }
        digits[i] = '0';
    }
    digits.prepend('1');
}

} // namespace

std::int16_t ToInt16(double value) {
    return Narrow<std::int16_t>(value);
}
std::int32_t ToInt32(double value) {
    return Narrow<std::int32_t>(value);
}
std::uint8_t ToUInt8(double value) {
    return Narrow<std::uint8_t>(value);
}

QStringView TrimBlanks(QStringView text) {
    while (text.startsWith(u' ')) {
        text = text.mid(1);
    }
    while (text.endsWith(u' ')) {
        text.chop(1);
    }
    return text;
}

bool IsNumeric(const QString &text) {
    double value = 0;
    return Parse(text, value);
}

double ToNumber(const QString &text) {
    double value = 0;
    if (!Parse(text, value)) {
        throw Fault::Conversion(QStringLiteral("\"%1\" isn't a number").arg(text));
    }
    return value;
}

QString FormatDecimals(double value, int decimals) {
    // "d.dddddddddddddde[+-]xx": 15 significant digits and the decimal exponent of the first.
    const QByteArray scientific = QByteArray::number(std::abs(value), 'e', 14);
    const qsizetype mark = scientific.indexOf('e');
    QByteArray digits = scientific.left(mark);
    digits.remove(1, 1);
    const int exponent = scientific.mid(mark + 1).toInt();

    const int kept = exponent + 1 + decimals; // digits that stay; the next one decides the rounding
    if (kept < 0) {
        digits = "0";
    } else if (kept < digits.size()) {
        const bool up = digits[kept] >= '5';
        digits.truncate(kept);
        if (up) {
            Increment(digits);
        }
    } else {
        digits.append(QByteArray(kept - digits.size(), '0'));
    }
    if (digits.size() <= decimals) {
        digits.prepend(QByteArray(decimals + 1 - digits.size(), '0'));
    }
    const bool negative = value < 0 && digits.count('0') != digits.size();
    if (decimals > 0) {
        digits.insert(digits.size() - decimals, '.');
    }
    return QLatin1String(negative ? "-" : "") + QString::fromLatin1(digits);
}

QString ReformatDecimals(const QString &text, int decimals) {
    return IsNumeric(text) ? FormatDecimals(ToNumber(text), decimals) : text;
}

} // namespace ztv

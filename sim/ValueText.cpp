#include "sim/ValueText.h"

#include <cmath>

namespace sim {
namespace {

std::optional<double> Number(const QString &text, double min, double max) {
    bool ok = false;
    const double value = text.toDouble(&ok);
    if (!ok || !(value >= min && value <= max)) {
        return {};
    }
    return value;
}

} // namespace

std::optional<int> WholeNumber(const QString &text, int min, int max) {
    bool ok = false;
    const int value = text.toInt(&ok);
    if (!ok || value < min || value > max) {
        return {};
    }
    return value;
}

std::optional<int> HexNumber(const QString &text, int max) {
    bool ok = false;
    const bool hexadecimal = text.startsWith(QLatin1String("0x"), Qt::CaseInsensitive);
    const int value = text.toInt(&ok, hexadecimal ? 16 : 10);
    if (!ok || value < 0 || value > max) {
        return {};
    }
    return value;
}

std::optional<double> Probability(const QString &text) {
    return Number(text, 0, 1);
}

std::optional<bool> OnOff(const QString &text) {
    if (text == QLatin1String("on")) {
        return true;
    }
    if (text == QLatin1String("off")) {
        return false;
    }
    return {};
}

std::optional<int> Hundredths(const QString &text, int max) {
    const std::optional<double> value = Number(text, 0, max / 100.0);
    if (!value) {
        return {};
    }
    return static_cast<int>(std::lround(*value * 100));
}

} // namespace sim

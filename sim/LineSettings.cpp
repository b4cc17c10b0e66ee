#include "sim/LineSettings.h"

#include <termios.h>

#include <algorithm>
#include <array>

namespace sim {
namespace {

constexpr std::array bitRates{2400, 4800, 9600, 19200, 38400};
constexpr std::array<speed_t, 5> speeds{B2400, B4800, B9600, B19200, B38400};
constexpr std::array parities{"N1", "N2", "E1", "O1"};
constexpr int n1 = 0;
constexpr int n2 = 1;
constexpr int o1 = 3;

} // namespace

int LineSettings::BitsPerSecond() const {
    return bitRates.at(static_cast<std::size_t>(baud));
}

QString LineSettings::ParityText() const {
    return QString::fromLatin1(parities.at(static_cast<std::size_t>(parity)));
}

double LineSettings::CharacterMs() const {
    return (parity == n1 ? 10.0 : 11.0) * 1000.0 / BitsPerSecond();
}

double LineSettings::BootCharacterMs() const {
    return 10.0 * 1000.0 / BitsPerSecond();
}

// Counts even parity as none: the two can't be distinguished (see Matches).
double LineSettings::CharacterMsOf(const termios &other) {
    const auto *speed = std::find(speeds.begin(), speeds.end(), cfgetospeed(&other));
    if (speed == speeds.end()) {
        return 0;
    }
    const double bits = (other.c_cflag & (CSTOPB | PARODD)) != 0 ? 11.0 : 10.0;
    return bits * 1000.0 / bitRates.at(static_cast<std::size_t>(speed - speeds.begin()));
}

bool LineSettings::SameSpeed(const termios &other) const {
    return cfgetospeed(&other) == speeds.at(static_cast<std::size_t>(baud));
}

// Compares all settings but even parity: a pseudo terminal drops PARENB and keeps PARODD, so that odd parity
// is visible and even parity looks like none.
bool LineSettings::Matches(const termios &other) const {
    const bool twoStopBits = (other.c_cflag & CSTOPB) != 0;
    const bool odd = (other.c_cflag & PARODD) != 0;
    return SameSpeed(other) && twoStopBits == (parity == n2) && odd == (parity == o1);
}

std::optional<int> BaudFromText(const QString &text) {
    for (std::size_t i = 0; i < bitRates.size(); ++i) {
        if (text == QString::number(bitRates[i])) {
            return static_cast<int>(i);
        }
    }
    return {};
}

std::optional<int> ParityFromText(const QString &text) {
    for (std::size_t i = 0; i < parities.size(); ++i) {
        if (text == QLatin1String(parities[i])) {
            return static_cast<int>(i);
        }
    }
    return {};
}

} // namespace sim

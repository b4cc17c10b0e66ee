#pragma once

#include <QString>

#include <optional>

struct termios;

namespace sim {

// The settings that both ends of a serial line must share, as the sensor numbers them, and the sensor's
// address.
struct LineSettings {
    int address = 1;
    int baud = 4;   // 2400, 4800, 9600, 19200, 38400
    int parity = 1; // N1, N2, E1, O1
    int addressing = 1;

    int BitsPerSecond() const;
    QString ParityText() const; // "N2"
    double CharacterMs() const;
    // The time of a character of the boot loader, which has no parity and one stop bit.
    double BootCharacterMs() const;

    // The time of a character of a host with these settings; 0 for a speed that no sensor has.
    static double CharacterMsOf(const termios &other);

    bool SameSpeed(const termios &other) const;
    bool Matches(const termios &other) const;
};

// "38400" gives 4.
std::optional<int> BaudFromText(const QString &text);
// "N2" gives 1.
std::optional<int> ParityFromText(const QString &text);

} // namespace sim

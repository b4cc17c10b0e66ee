#pragma once

#include <QString>

#include <optional>

struct termios;

namespace sim {

// What the two ends of a serial line have to agree on, as the sensor numbers it, and the sensor's place on
// it.
struct LineSettings {
    int address = 1;
    int baud = 4;   // 2400, 4800, 9600, 19200, 38400
    int parity = 1; // N1, N2, E1, O1
    int addressing = 1;

    int BitsPerSecond() const;
    double CharacterMs() const;
    // Of the boot loader, which knows no parity and no second stop bit.
    double BootCharacterMs() const;

    // Of a host with these settings; 0 for a speed that no sensor has.
    static double CharacterMsOf(const termios &other);

    bool SameSpeed(const termios &other) const;
    bool Matches(const termios &other) const;
};

// "38400" gives 4.
std::optional<int> BaudFromText(const QString &text);
// "N2" gives 1.
std::optional<int> ParityFromText(const QString &text);

} // namespace sim

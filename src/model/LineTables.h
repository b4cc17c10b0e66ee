#pragma once

#include <array>
#include <cstdint>

namespace ztv {

enum class Parity : std::int16_t { None = 0, Odd = 1, Even = 2 };
enum class StopBits : std::int16_t { One = 0, Two = 1 };

struct BaudRow {
    int bitsPerSecond;
    std::int16_t code; // the master's
    const char *text;
    std::int16_t responseTimeoutMs;
    std::int16_t pollPeriodMs;    // of all registers
    std::int16_t searchTimeoutMs; // far below responseTimeoutMs: a silent address must cost little
};

// By baud index: the value of ParamDefines::BaudRateCode.
inline constexpr std::array BaudTable = {
    BaudRow{2400, 3, "2400", 1200, 1500, 120}, BaudRow{4800, 4, "4800", 600, 700, 60},
    BaudRow{9600, 5, "9600", 350, 500, 30},    BaudRow{19200, 7, "19200", 200, 300, 30},
    BaudRow{38400, 8, "38400", 100, 200, 30},
};

struct ParityStopRow {
    const char *text;
    Parity parity;
    StopBits stopBits;
};

// By parity and stop index: the value of ParamDefines::ParityStopCode.
inline constexpr std::array ParityStopTable = {
    ParityStopRow{"N1", Parity::None, StopBits::One},
    ParityStopRow{"N2", Parity::None, StopBits::Two},
    ParityStopRow{"E1", Parity::Even, StopBits::One},
    ParityStopRow{"O1", Parity::Odd, StopBits::One},
};

inline constexpr std::int16_t HighestBaud = BaudTable.size() - 1;
inline constexpr std::int16_t HighestParityStop = ParityStopTable.size() - 1;

} // namespace ztv

#pragma once

#include <QtGlobal>
#include <cstdint>

namespace ztv {

// The master's codes of a serial line with 8 data bits.
struct LineCodes {
    std::int16_t baud;     // 3, 4, 5, 7 or 8 for 2400 to 38400
    std::int16_t parity;   // 0 none, 1 odd, 2 even
    std::int16_t stopBits; // 0 one, 1 two
};

// Returns the codes of two indices of the program's tables. An index outside a table counts as its last one.
LineCodes LineCodesOf(std::int16_t baud, std::int16_t parityStop);

int BitsPerSecond(std::int16_t baudCode);

// Returns the rate of an index of the program's table. Throws a Fault (subscript) for any other.
int BitsPerSecondOfIndex(std::int16_t baud);

// Returns the time that `bytes` bytes take on the line, in microseconds.
qint64 LineTimeUs(const LineCodes &line, qint64 bytes);

} // namespace ztv

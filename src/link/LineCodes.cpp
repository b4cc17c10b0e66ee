#include "link/LineCodes.h"

#include "model/CheckedAt.h"

#include <array>

namespace ztv {

namespace {

struct BaudRate {
    std::int16_t code;
    int bitsPerSecond;
};

// In the order of the indices.
constexpr std::array baudRates = {BaudRate{3, 2400}, BaudRate{4, 4800}, BaudRate{5, 9600}, BaudRate{7, 19200},
                                  BaudRate{8, 38400}};

struct Parity {
    std::int16_t parity;
    std::int16_t stopBits;
};

constexpr std::array parities = {Parity{0, 0}, Parity{0, 1}, Parity{2, 0}, Parity{1, 0}};

template <typename Row, std::size_t Count>
const Row &RowOrLast(const std::array<Row, Count> &rows, std::int16_t index) {
    const bool isRow = index >= 0 && static_cast<std::size_t>(index) < Count;
    return isRow ? rows[static_cast<std::size_t>(index)] : rows.back();
}

} // namespace

LineCodes LineCodesOf(std::int16_t baud, std::int16_t parityStop) {
    const Parity &parity = RowOrLast(parities, parityStop);
    return {.baud = RowOrLast(baudRates, baud).code, .parity = parity.parity, .stopBits = parity.stopBits};
}

int BitsPerSecond(std::int16_t baudCode) {
    for (const BaudRate &rate : baudRates) {
        if (rate.code == baudCode) {
            return rate.bitsPerSecond;
        }
    }
    return baudRates.back().bitsPerSecond;
}

int BitsPerSecondOfIndex(std::int16_t baud) {
    return CheckedAt(baudRates, baud, "BaudRate").bitsPerSecond;
}

qint64 LineTimeUs(const LineCodes &line, qint64 bytes) {
    constexpr qint64 secondUs = 1'000'000;
    const bool tenBits = line.parity == 0 && line.stopBits == 0; // per character; otherwise eleven
    return bytes * (tenBits ? 10 : 11) * secondUs / BitsPerSecond(line.baud);
}

} // namespace ztv

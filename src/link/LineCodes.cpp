#include "link/LineCodes.h"

#include "model/CheckedAt.h"

namespace ztv {

namespace {

template <typename Row, std::size_t Count>
const Row &RowOrLast(const std::array<Row, Count> &rows, std::int16_t index) {
    const bool isRow = index >= 0 && static_cast<std::size_t>(index) < Count;
    return isRow ? rows[static_cast<std::size_t>(index)] : rows.back();
}

} // namespace

LineCodes LineCodesOf(std::int16_t baud, std::int16_t parityStop) {
    const ParityStopRow &row = RowOrLast(ParityStopTable, parityStop);
    return {.baud = RowOrLast(BaudTable, baud).code, .parity = row.parity, .stopBits = row.stopBits};
}

int BitsPerSecond(std::int16_t baudCode) {
    for (const BaudRow &row : BaudTable) {
        if (row.code == baudCode) {
            return row.bitsPerSecond;
        }
    }
    return BaudTable.back().bitsPerSecond;
}

int BitsPerSecondOfIndex(std::int16_t baud) {
    return CheckedAt(BaudTable, baud, "BaudRate").bitsPerSecond;
}

qint64 LineTimeUs(const LineCodes &line, qint64 bytes) {
    constexpr qint64 secondUs = 1'000'000;
    const bool tenBits = line.parity == Parity::None && line.stopBits == StopBits::One; // otherwise eleven
    return bytes * (tenBits ? 10 : 11) * secondUs / BitsPerSecond(line.baud);
}

} // namespace ztv

#pragma once

#include <QByteArrayView>
#include <cstdint>

// Hexadecimal fields of a line, by position. Positions count from 1.
namespace HexField {

// The value of at most `width` digits from `position` on, of either case. What isn't a digit, and the end of
// the line, ends the field: its leading digits count, and 0 where there is none. `width` is at most 8.
std::uint32_t Value(QByteArrayView line, qsizetype position, int width);

// Writes the low `width` upper-case digits of the value. Answers with the place behind them.
char *Put(char *to, std::uint32_t value, int width);

} // namespace HexField

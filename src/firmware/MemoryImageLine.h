#pragma once

#include <QByteArrayView>
#include <cstdint>

// A line of a memory image: the address of its first byte in six digits, then a blank and two digits for each
// of its 16 bytes. Fields are read by position (HexField::Value), so a line may end early or go on.
namespace MemoryImageLine {

constexpr int byteCount = 16;
constexpr qsizetype textLength = 6 + 3 * byteCount;

std::uint32_t Address(QByteArrayView line);

// The address that a line is written to. One with fewer than six digits is read as if a 1 stood before it, as
// it always has been: an empty line goes to 1.
std::uint32_t AddressToWrite(QByteArrayView line);

std::uint8_t Byte(QByteArrayView line, int index);

// The characters where a byte's digits are, as they stand: fewer than two where the line ends.
QByteArrayView Digits(QByteArrayView line, int index);

// Writes textLength characters. Answers with the place behind them.
char *Put(char *to, std::uint32_t address, const std::uint8_t *bytes);

} // namespace MemoryImageLine

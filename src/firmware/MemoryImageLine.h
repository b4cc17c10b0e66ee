#pragma once

#include <QByteArrayView>
#include <cstdint>

namespace ztv {

// A line of a memory image: the address of its first byte in six digits, then a blank and two digits for each
// of its 16 bytes. Fields are read by position (HexField::Value), so a line may be shorter or longer.
namespace MemoryImageLine {

constexpr int byteCount = 16;
constexpr qsizetype textLength = 6 + 3 * byteCount;

std::uint32_t Address(QByteArrayView line);

// Returns the address to which a line is written. Deliberate: an address of fewer than six digits is read as
// if a 1 stood before it, so that an empty line is written to 1.
std::uint32_t AddressToWrite(QByteArrayView line);

std::uint8_t Byte(QByteArrayView line, int index);

// Returns the characters at a byte's digits, unchecked: fewer than two where the line ends.
QByteArrayView Digits(QByteArrayView line, int index);

// Writes textLength characters. Returns the place after them.
char *Put(char *to, std::uint32_t address, const std::uint8_t *bytes);

} // namespace MemoryImageLine

} // namespace ztv

#include "firmware/MemoryImageLine.h"

#include "firmware/HexField.h"

#include <QByteArray>
#include <algorithm>

namespace ztv {

namespace {

constexpr int addressDigits = 6;

constexpr qsizetype PositionOf(int index) {
    return addressDigits + 2 + 3 * index;
}

} // namespace

std::uint32_t MemoryImageLine::Address(QByteArrayView line) {
    return HexField::Value(line, 1, addressDigits);
}

std::uint32_t MemoryImageLine::AddressToWrite(QByteArrayView line) {
    constexpr std::uint32_t mask = 0xFFFFFF;
    const QByteArray digits = '1' + line.first(std::min<qsizetype>(addressDigits, line.size())).toByteArray();
    return HexField::Value(digits, 1, 1 + addressDigits) & mask;
}

std::uint8_t MemoryImageLine::Byte(QByteArrayView line, int index) {
    return static_cast<std::uint8_t>(HexField::Value(line, PositionOf(index), 2));
}

QByteArrayView MemoryImageLine::Digits(QByteArrayView line, int index) {
    const qsizetype start = std::min(PositionOf(index) - 1, line.size());
    return line.sliced(start, std::min<qsizetype>(2, line.size() - start));
}

char *MemoryImageLine::Put(char *to, std::uint32_t address, const std::uint8_t *bytes) {
    to = HexField::Put(to, address, addressDigits);
    for (int index = 0; index < byteCount; ++index) {
        *to++ = ' ';
        to = HexField::Put(to, bytes[index], 2);
    }
    return to;
}

} // namespace ztv

#include "firmware/HexRecord.h"

#include "firmware/HexField.h"

namespace ztv {

namespace {

constexpr int lengthPosition = 2;
constexpr int addressPosition = 4;
constexpr int typePosition = 8;
constexpr int dataPosition = 10;

} // namespace

int HexRecord::Length() const {
    return static_cast<int>(HexField::Value(line_, lengthPosition, 2));
}

std::uint32_t HexRecord::Address() const {
    return HexField::Value(line_, addressPosition, 4);
}

std::uint32_t HexRecord::Type() const {
    return HexField::Value(line_, typePosition, 2);
}

std::uint32_t HexRecord::UpperWord() const {
    return HexField::Value(line_, dataPosition, 4);
}

std::uint8_t HexRecord::Byte(int index) const {
    return static_cast<std::uint8_t>(HexField::Value(line_, dataPosition + 2 * index, 2));
}

int HexRecord::SumOfGroups(QByteArrayView text, int count) {
    std::uint32_t sum = 0;
    for (int group = 0; group < count; ++group) {
        sum += HexField::Value(text, 2 * group + 2, 2);
    }
    return static_cast<int>(sum);
}

std::uint8_t HexRecord::Checksum(QByteArrayView text, int count) {
    return static_cast<std::uint8_t>(256 - SumOfGroups(text, count) % 256);
}

} // namespace ztv

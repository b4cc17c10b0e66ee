#pragma once

#include <QByteArrayView>
#include <cstdint>

namespace ztv {

// A line of an INHEX32 file, parsed by position: ":", length, address, type, data, checksum. A line that ends
// early or contains other characters than digits still has a value in every field (HexField::Value).
class HexRecord {
public:
    static constexpr std::uint32_t dataType = 0;
    static constexpr std::uint32_t endType = 1;
    static constexpr std::uint32_t upperWordType = 4;

    // The number of characters that fields can reach: those of a record of 255 bytes.
    static constexpr qsizetype longestText = 1 + 2 * (255 + 5);

    // Returns true for a line that starts with ":".
    static bool IsRecord(QByteArrayView line) { return line.startsWith(':'); }

    // Refers to the line and doesn't copy it.
    explicit HexRecord(QByteArrayView line) : line_(line) {}

    int Length() const;
    std::uint32_t Address() const; // the low 16 bits
    std::uint32_t Type() const;
    std::uint32_t UpperWord() const; // of a record of upperWordType
    std::uint8_t Byte(int index) const;

    // The sum of all bytes that the length announces, checksum included.
    int Sum() const { return SumOfGroups(line_, Length() + 5); }

    // The sum of the first `count` groups of two digits after the ":".
    static int SumOfGroups(QByteArrayView text, int count);

    // Returns the checksum: the sum of the groups and the checksum is 0 modulo 256.
    static std::uint8_t Checksum(QByteArrayView text, int count);

private:
    QByteArrayView line_;
};

} // namespace ztv

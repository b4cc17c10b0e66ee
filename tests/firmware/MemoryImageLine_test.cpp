#include "firmware/MemoryImageLine.h"

#include "tests/helpers/Printers.h"

#include <array>
#include <gtest/gtest.h>

namespace ztv {

namespace {

constexpr const char *line = "20000F 00 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E FF";

} // namespace

TEST(MemoryImageLineTest, ReadsEachFieldByPosition) {
    EXPECT_EQ(MemoryImageLine::Address(line), 0x20000FU);
    for (int index = 0; index < 15; ++index) {
        EXPECT_EQ(MemoryImageLine::Byte(line, index), index);
    }
    EXPECT_EQ(MemoryImageLine::Byte(line, 15), 0xFF);
    EXPECT_EQ(MemoryImageLine::Digits(line, 10), QByteArrayView("0A"));
}

TEST(MemoryImageLineTest, ReadsBothFormsAlike) {
    const QByteArray fromImport = QByteArray(line) + ' ';
    EXPECT_EQ(MemoryImageLine::Address(fromImport), 0x20000FU);
    EXPECT_EQ(MemoryImageLine::Byte(fromImport, 15), 0xFF);
    EXPECT_EQ(MemoryImageLine::Digits(fromImport, 15), QByteArrayView("FF"));
}

TEST(MemoryImageLineTest, DoesntMindWhatStandsBetweenTheFields) {
    EXPECT_EQ(MemoryImageLine::Address("000800:12,34"), 0x800U);
    EXPECT_EQ(MemoryImageLine::Byte("000800:12,34", 0), 0x12);
    EXPECT_EQ(MemoryImageLine::Byte("000800:12,34", 1), 0x34);
}

TEST(MemoryImageLineTest, ReadsALineThatEndsEarly) {
    EXPECT_EQ(MemoryImageLine::Address(""), 0U);
    EXPECT_EQ(MemoryImageLine::Address("0008"), 8U);
    EXPECT_EQ(MemoryImageLine::Byte("000800 1", 0), 1);
    EXPECT_EQ(MemoryImageLine::Byte("000800 1", 1), 0);
    EXPECT_EQ(MemoryImageLine::Byte("", 15), 0);
    EXPECT_EQ(MemoryImageLine::Digits("000800 1", 0), QByteArrayView("1"));
    EXPECT_TRUE(MemoryImageLine::Digits("000800 1", 1).isEmpty());
    EXPECT_TRUE(MemoryImageLine::Digits("", 15).isEmpty());
}

TEST(MemoryImageLineTest, ReadsWhatIsntHexadecimalAsItsLeadingDigits) {
    EXPECT_EQ(MemoryImageLine::Address("08x800"), 8U);
    EXPECT_EQ(MemoryImageLine::Byte("000800 Fx xF", 0), 0xF);
    EXPECT_EQ(MemoryImageLine::Byte("000800 Fx xF", 1), 0);
    EXPECT_EQ(MemoryImageLine::Digits("000800 Fx xF", 1), QByteArrayView("xF"));
}

TEST(MemoryImageLineTest, WritesALineOf54Characters) {
    std::array<std::uint8_t, MemoryImageLine::byteCount> bytes{};
    for (std::uint8_t index = 0; index < 15; ++index) {
        bytes[index] = index;
    }
    bytes[15] = 0xFF;
    std::array<char, MemoryImageLine::textLength> text{};
    EXPECT_EQ(MemoryImageLine::Put(text.data(), 0x20000F, bytes.data()), text.data() + 54);
    EXPECT_EQ(QByteArray(text.data(), text.size()), QByteArray(line));
}

} // namespace ztv

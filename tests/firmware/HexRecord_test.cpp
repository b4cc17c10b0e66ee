#include "firmware/HexRecord.h"

#include "tests/helpers/Printers.h"

#include <gtest/gtest.h>

namespace ztv {

namespace {

// Checksums from the format's description and from files of other programs.
struct KnownChecksum {
    const char *text;
    int groups;
    std::uint8_t checksum;
};

const KnownChecksum knownChecksums[] = {
    {":00000001", 4, 0xFF},
    {":02000004FFFF", 6, 0xFC},
    {":020000040000", 6, 0xFA},
    {":020000040020", 6, 0xDA},
    {":020000040030", 6, 0xCA},
    {":0200000400F0", 6, 0x0A},
    {":0300300002337A", 7, 0x1E},
    {":10010000214601360121470136007EFE09D21901", 20, 0x40},
    {":100110002146017E17C20001FF5F160021480119", 20, 0x28},
    {":100130003F0156702B5E712B722B732146013421", 20, 0xC7},
    {":10246200464C5549442050524F46494C4500464C", 20, 0x33},
};

} // namespace

TEST(HexRecordTest, TakesARecordApart) {
    const HexRecord record(":10246200464C5549442050524F46494C4500464C33");
    EXPECT_EQ(record.Length(), 16);
    EXPECT_EQ(record.Address(), 0x2462U);
    EXPECT_EQ(record.Type(), HexRecord::dataType);
    EXPECT_EQ(record.Byte(0), 0x46);
    EXPECT_EQ(record.Byte(15), 0x4C);
    EXPECT_EQ(record.Byte(16), 0x33);
    EXPECT_EQ(record.Sum() % 256, 0);
    EXPECT_EQ(HexRecord(":020000040020DA").UpperWord(), 0x20U);
    EXPECT_EQ(HexRecord(":020000040020DA").Type(), HexRecord::upperWordType);
    EXPECT_EQ(HexRecord(":00000001FF").Type(), HexRecord::endType);
}

TEST(HexRecordTest, ReadsMissingFieldsAsZero) {
    const HexRecord record(":");
    EXPECT_EQ(record.Length(), 0);
    EXPECT_EQ(record.Address(), 0U);
    EXPECT_EQ(record.Type(), HexRecord::dataType);
    EXPECT_EQ(record.UpperWord(), 0U);
    EXPECT_EQ(record.Byte(254), 0);
    EXPECT_EQ(record.Sum(), 0);
}

TEST(HexRecordTest, SumsAllThatTheLengthSays) {
    const QByteArray longest = ":FF" + QByteArray(518, 'F');
    EXPECT_EQ(longest.size(), HexRecord::longestText);
    EXPECT_EQ(HexRecord(longest).Sum(), 260 * 255);
    EXPECT_EQ(HexRecord(":02000000").Sum(), 2);
    EXPECT_EQ(HexRecord(":0000000000FF").Sum(), 0);
}

TEST(HexRecordTest, MakesKnownChecksums) {
    for (const auto &[text, groups, checksum] : knownChecksums) {
        EXPECT_EQ(HexRecord::Checksum(text, groups), checksum) << text;
    }
}

TEST(HexRecordTest, IsALineThatStartsWithAColon) {
    EXPECT_TRUE(HexRecord::IsRecord(":"));
    EXPECT_FALSE(HexRecord::IsRecord(""));
    EXPECT_FALSE(HexRecord::IsRecord(" :00000001FF"));
}

} // namespace ztv

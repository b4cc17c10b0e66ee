#include "firmware/HexField.h"

#include "firmware/HexDigits.h"
#include "tests/helpers/Printers.h"

#include <array>
#include <gtest/gtest.h>

namespace ztv {

namespace {

QByteArray Text(std::uint32_t value, int width) {
    std::array<char, 8> text{};
    const char *end = HexField::Put(text.data(), value, width);
    EXPECT_EQ(end, text.data() + width);
    return {text.data(), width};
}

} // namespace

TEST(HexFieldTest, ReadsDigitsOfEitherCaseByPositionFromOne) {
    EXPECT_EQ(HexField::Value("0123", 1, 2), 0x01U);
    EXPECT_EQ(HexField::Value("0123", 2, 2), 0x12U);
    EXPECT_EQ(HexField::Value("xaBcDx", 2, 4), 0xABCDU);
    EXPECT_EQ(HexField::Value("89abcdef", 1, 8), 0x89ABCDEFU);
    EXPECT_EQ(HexField::Value("FFFFFFFF", 1, 8), 0xFFFFFFFFU);
}

TEST(HexFieldTest, ReadsTheLeadingDigitsOfAFieldThatIsntHexadecimal) {
    EXPECT_EQ(HexField::Value("1G", 1, 2), 1U);
    EXPECT_EQ(HexField::Value("12 456", 1, 6), 0x12U);
    EXPECT_EQ(HexField::Value("12-456", 1, 6), 0x12U);
}

TEST(HexFieldTest, ReadsAFieldWithoutLeadingDigitsAsZero) {
    for (const char *text : {"G1", " 1", "-1", "+1", ":1", "@1", "/1", "`1", "g1", "\xC3\xA4"}) {
        EXPECT_EQ(HexField::Value(text, 1, 2), 0U) << text;
    }
    EXPECT_EQ(HexField::Value(QByteArrayView("\0001", 2), 1, 2), 0U);
}

TEST(HexFieldTest, ReadsWhatIsThereOfAFieldThatTheLineCutsOff) {
    EXPECT_EQ(HexField::Value("0012", 3, 4), 0x12U);
    EXPECT_EQ(HexField::Value("001", 3, 2), 1U);
    EXPECT_EQ(HexField::Value("00", 3, 2), 0U);
    EXPECT_EQ(HexField::Value("", 1, 6), 0U);
    EXPECT_EQ(HexField::Value("", 519, 2), 0U);
}

TEST(HexFieldTest, WritesWhatHexDigitsGives) {
    for (std::int32_t value = 0; value < 0x100; ++value) {
        EXPECT_EQ(QString::fromLatin1(Text(static_cast<std::uint32_t>(value), 2)), HexDigits(value, 2));
    }
    for (const std::int32_t value : {0, 0x7, 0x800, 0xBFFF, 0x20000F, 0xABCDEF, 0xFFFFFF}) {
        EXPECT_EQ(QString::fromLatin1(Text(static_cast<std::uint32_t>(value), 6)), HexDigits(value, 6));
    }
}

} // namespace ztv

#include "support/Numbers.h"

#include "support/Fault.h"
#include "tests/helpers/Printers.h"

#include <gtest/gtest.h>

namespace ztv {

TEST(Narrowing, TakesAHalfToTheEvenNeighbour) {
    EXPECT_EQ(ToInt16(0.5), 0);
    EXPECT_EQ(ToInt16(1.5), 2);
    EXPECT_EQ(ToInt16(2.5), 2);
    EXPECT_EQ(ToInt16(-0.5), 0);
    EXPECT_EQ(ToInt16(-1.5), -2);
    EXPECT_EQ(ToInt32(4949.5), 4950);
    EXPECT_EQ(ToInt32(4950.5), 4950);
}

TEST(Narrowing, HoldsUpToTheLimitsOfTheType) {
    EXPECT_EQ(ToInt16(32767.0), 32767);
    EXPECT_EQ(ToInt16(-32768.0), -32768);
    EXPECT_EQ(ToInt16(32767.4), 32767);
    EXPECT_EQ(ToUInt8(255.0), 255);
    EXPECT_EQ(ToInt32(2147483647.0), 2147483647);
}

TEST(Narrowing, IsAnOverflowFaultBeyondThem) {
    for (const double value : {32768.0, 32767.5, -32769.0, 1e300}) {
        try {
            ToInt16(value);
            ADD_FAILURE() << value;
        } catch (const Fault &fault) {
            EXPECT_EQ(fault.Cause(), Fault::Kind::Overflow);
        }
    }
    EXPECT_THROW(ToUInt8(256.0), Fault);
    EXPECT_THROW(ToUInt8(-1.0), Fault);
    EXPECT_THROW(ToInt32(2147483648.0), Fault);
}

struct NumericCase {
    const char *text;
    bool numeric;
};

class NumericText : public testing::TestWithParam<NumericCase> {};

TEST_P(NumericText, IsToldFromOthers) {
    EXPECT_EQ(IsNumeric(QString::fromUtf8(GetParam().text)), GetParam().numeric)
        << '"' << GetParam().text << '"';
}

INSTANTIATE_TEST_SUITE_P(
    Table, NumericText,
    testing::Values(NumericCase{"0", true}, NumericCase{"  12 ", true}, NumericCase{"+1.5", true},
                    NumericCase{"-.5", true}, NumericCase{"5.", true}, NumericCase{"1e3", true},
                    NumericCase{"1.5E-3", true}, NumericCase{"007", true}, NumericCase{"", false},
                    NumericCase{" ", false}, NumericCase{".", false}, NumericCase{"-", false},
                    NumericCase{"1,5", false}, NumericCase{"1.2.3", false}, NumericCase{"1 2", false},
                    NumericCase{"- 1", false}, NumericCase{"1e", false}, NumericCase{"1e+", false},
                    NumericCase{"e3", false}, NumericCase{"0x10", false}, NumericCase{"nan", false},
                    NumericCase{"inf", false}, NumericCase{"1e999", false}, NumericCase{"12\"", false},
                    NumericCase{"\xD9\xA3", false}, NumericCase{"1\t", false}, NumericCase{"1d3", false},
                    NumericCase{"1e-400", true}, NumericCase{"1.5\u00A0", false}));

TEST(NumericText, IsJudgedByItsValueHoweverLongItIs) {
    const QString zeros(400, u'0');
    EXPECT_FALSE(IsNumeric(u'1' + zeros));
    EXPECT_FALSE(IsNumeric(u'1' + zeros + QStringLiteral("e-5")));
    EXPECT_EQ(ToNumber(u'1' + zeros + QStringLiteral("e-400")), 1);
    EXPECT_EQ(ToNumber(QStringLiteral("0.") + zeros + u'1'), 0);
    EXPECT_EQ(ToNumber(QStringLiteral("-.") + zeros + QStringLiteral("1e+5")), 0);
    EXPECT_EQ(ToNumber(QStringLiteral("0e99999999999999999999")), 0);
    EXPECT_EQ(ToNumber(QStringLiteral("1e-99999999999999999999")), 0);
    EXPECT_FALSE(IsNumeric(QStringLiteral("1e99999999999999999999")));
}

TEST(NumericText, HasItsValue) {
    EXPECT_EQ(ToNumber(QStringLiteral(" -1.25e2 ")), -125.0);
    EXPECT_EQ(ToNumber(QStringLiteral(".5")), 0.5);
    EXPECT_THROW(ToNumber(QStringLiteral("1.5 V")), Fault);
}

struct FormatCase {
    double value;
    int decimals;
    const char *text;
};

class DecimalFormat : public testing::TestWithParam<FormatCase> {};

TEST_P(DecimalFormat, RoundsTheDecimalTextWithTiesAwayFromZero) {
    EXPECT_EQ(FormatDecimals(GetParam().value, GetParam().decimals), QString::fromLatin1(GetParam().text));
}

INSTANTIATE_TEST_SUITE_P(
    Table, DecimalFormat,
    testing::Values(FormatCase{1.2345, 3, "1.235"}, FormatCase{1.005, 2, "1.01"},
                    FormatCase{-1.005, 2, "-1.01"}, FormatCase{2.5, 0, "3"}, FormatCase{-2.5, 0, "-3"},
                    FormatCase{0.5, 0, "1"}, FormatCase{0.4999, 0, "0"}, FormatCase{-0.4, 0, "0"},
                    FormatCase{0.0, 2, "0.00"}, FormatCase{-0.001, 2, "0.00"}, FormatCase{0.005, 2, "0.01"},
                    FormatCase{0.0049, 2, "0.00"}, FormatCase{0.0005, 2, "0.00"},
                    FormatCase{9.995, 2, "10.00"}, FormatCase{99.5, 0, "100"}, FormatCase{0.5, 1, "0.5"},
                    FormatCase{420.0, 2, "420.00"}, FormatCase{-0.5, 2, "-0.50"},
                    FormatCase{5.996, 2, "6.00"}, FormatCase{1234567.0, 0, "1234567"},
                    FormatCase{2047.5, 0, "2048"}, FormatCase{1e20, 0, "100000000000000000000"},
                    FormatCase{65.536, 2, "65.54"}, FormatCase{0.95, 1, "1.0"}));

TEST(DecimalFormat, PassesATextThatIsNoNumberThrough) {
    EXPECT_EQ(ReformatDecimals(QStringLiteral("420.00\""), 2), QStringLiteral("420.00\""));
    EXPECT_EQ(ReformatDecimals(QStringLiteral("7"), 2), QStringLiteral("7.00"));
    EXPECT_EQ(ReformatDecimals(QString(), 2), QString());
}

} // namespace ztv

#include "model/Global.h"

#include "model/ClassZentrova.h"
#include "model/ParamDefines.h"
#include "support/Fault.h"
#include "tests/helpers/Printers.h"
#include "tests/helpers/TestPresets.h"

#include <gtest/gtest.h>

namespace ztv {

using namespace Global;

namespace {

// Rows of the shipped table, by their kind.
constexpr std::int16_t inches = ParamDefines::ActualDistance; // two decimals, the inch mark
constexpr std::int16_t volts = ParamDefines::FarVoltage;      // two decimals, V
constexpr std::int16_t noDecimals = ParamDefines::ManualOutput;
constexpr std::int16_t textValued = ParamDefines::ParityStopCode;

} // namespace

class GlobalTest : public testing::Test {
protected:
    ClassZentrova zentrova_{ShippedPresetsFolder()};
};

TEST_F(GlobalTest, ShowsADistanceInInches) {
    EXPECT_EQ(zentrova_.FormatRaw(106, inches), QStringLiteral("1.06\""));
    EXPECT_EQ(zentrova_.FormatRaw(42000, inches), QStringLiteral("420.00\""));
    EXPECT_EQ(zentrova_.FormatRaw(-50, inches), QStringLiteral("-0.50\""));
    EXPECT_EQ(zentrova_.FormatRaw(0, volts), QStringLiteral("0.00V"));
}

TEST_F(GlobalTest, ScalesByTheDecimalPlaces) {
    EXPECT_EQ(RawToFormatted(5, 1), QStringLiteral("0.5"));
    EXPECT_EQ(RawToFormatted(-50, 2), QStringLiteral("-0.50"));
    EXPECT_EQ(RawToFormatted(1, 3), QStringLiteral("0.001"));
    EXPECT_EQ(RawToFormatted(123, 0), QStringLiteral("123"));
    EXPECT_EQ(RawToFormatted(123, 4), QStringLiteral("123"));
    EXPECT_EQ(RawToFormatted(123, -1), QStringLiteral("123"));
    EXPECT_EQ(RawToFormatted(-2147483647 - 1, 2), QStringLiteral("-21474836.48"));
}

TEST_F(GlobalTest, ShowsTheTextOfATextValuedRow) {
    EXPECT_EQ(zentrova_.FormatRaw(1, textValued), QStringLiteral("N2"));
    EXPECT_EQ(zentrova_.FormatRaw(9, textValued), QStringLiteral("O1")); // above the maximum: the highest
    EXPECT_THROW(zentrova_.FormatRaw(-1, textValued), Fault);
}

TEST_F(GlobalTest, ShowsTheNumberAloneForUnitsWithoutAClass) {
    EXPECT_EQ(ApplyUnits(zentrova_, QStringLiteral("12"), 0, 5), QStringLiteral("12"));
    EXPECT_EQ(ApplyUnits(zentrova_, QStringLiteral("12"), 14, 5), QStringLiteral("12"));
    EXPECT_EQ(ApplyUnits(zentrova_, QStringLiteral("12"), -1, 5), QStringLiteral("12"));
}

TEST_F(GlobalTest, ReadsATypedValueWithTheRowsDecimals) {
    EXPECT_EQ(FormattedToRaw(zentrova_, QStringLiteral("1.2"), inches), 120);
    EXPECT_EQ(FormattedToRaw(zentrova_, QStringLiteral("1.256"), inches), 126);
    EXPECT_EQ(FormattedToRaw(zentrova_, QStringLiteral("-0.5"), inches), -50);
    EXPECT_EQ(FormattedToRaw(zentrova_, QStringLiteral(" 7 "), inches), 700);
    EXPECT_EQ(FormattedToRaw(zentrova_, QStringLiteral("2.5"), noDecimals), 3);
    EXPECT_EQ(FormattedToRaw(zentrova_, QStringLiteral("2047.5"), noDecimals), 2048);
}

TEST(GlobalDecimals, ReadsThreePlacesWithTheTieAwayFromZero) {
    const ChangedPresets presets("UPDATE Parameters SET DecimalPlaces = 3 WHERE rowid = 1 + 32");
    const ClassZentrova zentrova(presets.Folder());
    EXPECT_EQ(FormattedToRaw(zentrova, QStringLiteral("2"), inches), 2000);
    EXPECT_EQ(FormattedToRaw(zentrova, QStringLiteral("1.2345"), inches), 1235);
}

TEST_F(GlobalTest, FaultsOnATextThatIsNoNumber) {
    EXPECT_THROW(FormattedToRaw(zentrova_, QStringLiteral("abc"), inches), Fault);
    EXPECT_THROW(FormattedToRaw(zentrova_, QString(), inches), Fault);
    EXPECT_THROW(FormattedToRaw(zentrova_, QStringLiteral(".1.5"), inches), Fault);
    EXPECT_THROW(FormattedToRaw(zentrova_, QStringLiteral("1e.3"), inches), Fault);
    EXPECT_THROW(FormattedToRaw(zentrova_, QStringLiteral("99999999999"), inches), Fault);
}

TEST(GlobalPoint, IsTakenOutOfANumber) {
    EXPECT_EQ(RemoveDecimalPoint(QStringLiteral("1.26")), 126);
    EXPECT_EQ(RemoveDecimalPoint(QStringLiteral("-0.50")), -50);
    EXPECT_EQ(RemoveDecimalPoint(QStringLiteral("42")), 42);
    EXPECT_EQ(RemoveDecimalPoint(QString()), std::nullopt);
}

TEST_F(GlobalTest, StripsTheSuffixInEitherCase) {
    EXPECT_EQ(StripUnitSuffix(zentrova_, QStringLiteral("1.5v"), volts), QStringLiteral("1.5"));
    EXPECT_EQ(StripUnitSuffix(zentrova_, QStringLiteral("1.5V"), volts), QStringLiteral("1.5"));
    EXPECT_EQ(StripUnitSuffix(zentrova_, QStringLiteral("1.5 v"), volts), QStringLiteral("1.5 "));
    EXPECT_EQ(StripUnitSuffix(zentrova_, QStringLiteral("1.5"), volts), QStringLiteral("1.5"));
    EXPECT_EQ(StripUnitSuffix(zentrova_, QStringLiteral("7\""), inches), QStringLiteral("7"));
    EXPECT_EQ(StripUnitSuffix(zentrova_, QString(), inches), QString());
    EXPECT_EQ(StripUnitSuffix(zentrova_, QStringLiteral("N2"), textValued), QStringLiteral("N2"));
    EXPECT_EQ(StripUnitSuffix(zentrova_, QStringLiteral("12V"), noDecimals), QStringLiteral("12V"));
}

TEST(GlobalSuffix, OfMoreThanOneCharacterNeverMatches) {
    const ChangedPresets presets("UPDATE Units SET UnitText0 = 'mm' WHERE rowid = 1 + 3");
    const ClassZentrova zentrova(presets.Folder());
    EXPECT_EQ(StripUnitSuffix(zentrova, QStringLiteral("1.5mm"), volts), QStringLiteral("1.5mm"));
}

TEST(GlobalRegisters, ConvertBothWays) {
    EXPECT_EQ(SignedFromUnsigned(0), 0);
    EXPECT_EQ(SignedFromUnsigned(32767), 32767);
    EXPECT_EQ(SignedFromUnsigned(32768), -32768);
    EXPECT_EQ(SignedFromUnsigned(65535), -1);
    EXPECT_EQ(SignedFromUnsigned(-1), -1);
    EXPECT_EQ(SignedFromUnsigned(-32768), -32768);
    EXPECT_EQ(UnsignedFromSigned(0), 0);
    EXPECT_EQ(UnsignedFromSigned(32767), 32767);
    EXPECT_EQ(UnsignedFromSigned(-32768), 32768);
    EXPECT_EQ(UnsignedFromSigned(-1), 65535);
}

TEST(GlobalRegisters, OverflowBeyondSixteenBits) {
    EXPECT_THROW(SignedFromUnsigned(-32769), Fault);
    EXPECT_THROW(SignedFromUnsigned(98304), Fault);
    EXPECT_EQ(SignedFromUnsigned(98303), 32767);
}

TEST(GlobalInterpolation, ClipsAtBothEnds) {
    EXPECT_EQ(InterpolateClipped(5, 0, 10, 100, 200), 150);
    EXPECT_EQ(InterpolateClipped(-1, 0, 10, 100, 200), 100);
    EXPECT_EQ(InterpolateClipped(0, 0, 10, 100, 200), 100);
    EXPECT_EQ(InterpolateClipped(10, 0, 10, 100, 200), 200);
    EXPECT_EQ(InterpolateClipped(11, 0, 10, 100, 200), 200);
    EXPECT_EQ(InterpolateClipped(2.5, 0, 10, 200, 100), 175);
}

TEST(GlobalInterpolation, IsAStepOverAnEmptyOrReversedRange) {
    EXPECT_EQ(InterpolateClipped(5, 5, 5, 1, 2), 1);
    EXPECT_EQ(InterpolateClipped(5.1, 5, 5, 1, 2), 2);
    EXPECT_EQ(InterpolateClipped(7, 10, 5, 1, 2), 1);
    EXPECT_EQ(InterpolateClipped(11, 10, 5, 1, 2), 2);
}

} // namespace ztv

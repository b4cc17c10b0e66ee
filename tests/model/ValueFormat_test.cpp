#include "model/ValueFormat.h"

#include "model/ClassZentrova.h"
#include "model/Global.h"
#include "model/UnitTable.h"
#include "support/Fault.h"
#include "tests/helpers/Printers.h"
#include "tests/helpers/TestPresets.h"

#include <gtest/gtest.h>

namespace ztv {

class ValueFormatTest : public testing::Test {
protected:
    // Units 0 to 2: none, a suffix, two texts.
    UnitTable units_{std::vector<UnitTexts>{{}, {"V"}, {"Off", "On"}}};
    ValueFormat volts_{{.decimalPlaces = 2, .unitCode = 1, .maximum = 1000}, units_};
    ValueFormat switch_{{.decimalPlaces = 0, .unitCode = 2, .maximum = 1}, units_};
    ValueFormat count_{{.decimalPlaces = 0, .unitCode = 0, .maximum = 99}, units_};
};

TEST_F(ValueFormatTest, ScalesAValueAndAppendsItsSuffix) {
    EXPECT_EQ(volts_.Format(-50), QStringLiteral("-0.50V"));
    EXPECT_EQ(count_.Format(123), QStringLiteral("123"));
}

TEST_F(ValueFormatTest, ShowsTheTextOfAValueAndThatOfTheMaximumAboveIt) {
    EXPECT_EQ(switch_.Format(0), QStringLiteral("Off"));
    EXPECT_EQ(switch_.Format(7), QStringLiteral("On"));
    EXPECT_THROW(switch_.Format(-1), Fault);
}

TEST_F(ValueFormatTest, ParsesAgainWhatItFormats) {
    for (const std::int32_t raw : {0, 5, -5, 99, 1000, -12345, 65535}) {
        EXPECT_EQ(volts_.Parse(volts_.WithoutSuffix(volts_.Format(raw))), raw);
        EXPECT_EQ(count_.Parse(count_.WithoutSuffix(count_.Format(raw))), raw);
    }
}

TEST_F(ValueFormatTest, RoundsATypedNumberToItsDecimalPlaces) {
    EXPECT_EQ(volts_.ToDecimals(QStringLiteral("1.005")), QStringLiteral("1.01"));
    EXPECT_EQ(volts_.Parse(QStringLiteral("1.005")), 101);
    EXPECT_EQ(count_.Parse(QStringLiteral("2.5")), 3);
    EXPECT_EQ(volts_.ToDecimals(QStringLiteral("volts")), QStringLiteral("volts"));
    EXPECT_THROW(volts_.Parse(QStringLiteral("1V")), Fault);
}

TEST_F(ValueFormatTest, LooksAtItsUnitOnlyWhereAValueNeedsIt) {
    const ValueFormat unknown({.decimalPlaces = 1, .unitCode = 12, .maximum = 9}, units_);
    EXPECT_EQ(unknown.Parse(QStringLiteral("1.5")), 15);
    EXPECT_EQ(unknown.ToDecimals(QStringLiteral("1")), QStringLiteral("1.0"));
    EXPECT_THROW(unknown.Format(15), Fault);
    EXPECT_THROW(unknown.WithoutSuffix(QStringLiteral("1s")), Fault);
}

TEST(ValueFormat, IsThatOfTheRowForEachConversionOfATable) {
    const ClassZentrova zentrova(ShippedPresetsFolder());
    for (std::int16_t tag = 0; tag < zentrova.ParamCount(); ++tag) {
        const ValueFormat format = zentrova.FormatOf(tag);
        const QString shown = zentrova.FormatRaw(zentrova.ParamMax(tag), tag);
        EXPECT_EQ(format.Format(zentrova.ParamMax(tag)), shown) << tag;
        EXPECT_EQ(format.WithoutSuffix(shown), Global::StripUnitSuffix(zentrova, shown, tag)) << tag;
        EXPECT_EQ(format.ToDecimals(QStringLiteral("7")),
                  Global::FormatToDecimals(zentrova, QStringLiteral("7"), tag))
            << tag;
        EXPECT_EQ(format.Parse(QStringLiteral("7")),
                  Global::FormattedToRaw(zentrova, QStringLiteral("7"), tag))
            << tag;
    }
    EXPECT_THROW(zentrova.FormatOf(zentrova.ParamCount()), Fault);
    EXPECT_THROW(zentrova.FormatOf(-1), Fault);
}

} // namespace ztv

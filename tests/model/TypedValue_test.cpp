#include "model/TypedValue.h"

#include "model/ParamDefines.h"
#include "tests/helpers/Printers.h"
#include "tests/helpers/TestPresets.h"

#include <gtest/gtest.h>

namespace ztv {

using namespace ParamDefines;

class TypedValueTest : public testing::Test {
protected:
    void Set(std::int16_t tag, std::int32_t raw) { zentrova_.ParamUpdate(tag, raw); }

    void ExpectFits(const char *text, std::int16_t tag, std::int32_t raw) {
        const TypedValue typed = TypedValue::Of(zentrova_, QString::fromUtf8(text), tag);
        EXPECT_EQ(typed.verdict, TypedValue::Verdict::Fits) << text;
        EXPECT_EQ(typed.raw, raw) << text;
        EXPECT_EQ(typed.refusal, QString()) << text;
    }

    void ExpectRefused(const char *text, std::int16_t tag, TypedValue::Verdict verdict, const char *refusal) {
        const std::int32_t before = zentrova_.ParamValue(tag);
        const TypedValue typed = TypedValue::Of(zentrova_, QString::fromUtf8(text), tag);
        EXPECT_EQ(typed.verdict, verdict) << text;
        EXPECT_EQ(typed.refusal, QString::fromUtf8(refusal)) << text;
        EXPECT_EQ(zentrova_.ParamValue(tag), before) << text;
    }

    ClassZentrova zentrova_{ShippedPresetsFolder()}; // 6", 420", near 12", far 360"; 3" and 24"
};

constexpr std::int16_t distanceOffset = 26; // signed
constexpr std::int16_t userNumber = 95;     // up to 65535

TEST_F(TypedValueTest, IsANumberWithOrWithoutItsUnit) {
    ExpectFits("13.5\"", NearDistance, 1350);
    ExpectFits(" 14 ", NearDistance, 1400);
    ExpectFits("5v", NearVoltage, 500);
    ExpectFits("-1.5", distanceOffset, -150);
    ExpectFits("-100\"", distanceOffset, -10000);
    ExpectFits("65535", userNumber, 65535);
}

TEST_F(TypedValueTest, IsRefusedOutsideItsRowsLimitsAndWithoutANumber) {
    const char *limits = "Please enter a value between 6.00\" and 420.00\"";
    for (const char *text : {"", "abc", "5.99", "420.01", "13 mm", "1e99", ".1.5"}) {
        ExpectRefused(text, NearDistance, TypedValue::Verdict::OutOfRange, limits);
    }
    ExpectRefused("-100.01", distanceOffset, TypedValue::Verdict::OutOfRange,
                  "Please enter a value between -100.00\" and 100.00\"");
    ExpectRefused("65536", userNumber, TypedValue::Verdict::OutOfRange,
                  "Please enter a value between 0 and 65535");
}

TEST_F(TypedValueTest, IsRefusedWhenItConflictsWithThoseBesideIt) {
    ExpectRefused("360.01", NearDistance, TypedValue::Verdict::Conflicts,
                  "The Near Distance must be less than the Far Distance.");
    ExpectFits("360", NearDistance, 36000);
    Set(FarDistance, 20000);
    ExpectRefused("200.01", NearDistance, TypedValue::Verdict::Conflicts,
                  "The Near Distance must be less than the Far Distance.");
}

TEST_F(TypedValueTest, OutsideItsLimitsIsNotComparedWithThoseBesideIt) {
    Set(FarDistance, 60000);
    ExpectRefused("500", NearDistance, TypedValue::Verdict::OutOfRange,
                  "Please enter a value between 6.00\" and 420.00\"");
}

TEST_F(TypedValueTest, OfTheFarDistanceDragsTheNearDistanceInTheHyperbolicMode) {
    Set(FarDistance, 30000);
    Set(MaxDiameter, 2401);
    for (const std::int32_t mode : {ManualMode, LinearMode}) {
        Set(AnalogOutputMode, mode);
        EXPECT_EQ(TypedValue::NearDistanceAfter(zentrova_, FarDistance), std::nullopt);
    }
    Set(AnalogOutputMode, HyperbolicMode);
    EXPECT_EQ(TypedValue::NearDistanceAfter(zentrova_, FarDistance), 28950); // 28949.5, to the even number
    for (const std::int16_t tag : {NearDistance, CoreDiameter, MaxDiameter, AnalogOutputMode}) {
        EXPECT_EQ(TypedValue::NearDistanceAfter(zentrova_, tag), std::nullopt) << tag;
    }
}

} // namespace ztv

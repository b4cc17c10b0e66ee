#include "model/ParameterRules.h"

#include "model/ParamDefines.h"
#include "tests/helpers/Printers.h"
#include "tests/helpers/TestPresets.h"

#include <gtest/gtest.h>

namespace ztv {

using namespace ParamDefines;

namespace {

const QString minRangeMessage =
    QStringLiteral("The Min Range must be at least 1.06\" less than the Near Distance value. Please enter a "
                   "value of 10.94\" or lesser for Min Range or increase the Near Distance value.");
const QString maxRangeMessage = QStringLiteral("The Max Range must be greater than the Far Distance.");
const QString nearAboveFarMessage = QStringLiteral("The Near Distance must be less than the Far Distance.");
const QString nearBelowMinMessage = QStringLiteral(
    "The Near Distance must be at least 1.06\" greater than the Min Range value. Please enter a value of "
    "7.06\" or greater for the Near Distance or decrease the Min Range value.");
const QString farAboveMaxMessage =
    QStringLiteral("The Far Distance must be less than the Max Range Distance.");
const QString farBelowNearMessage =
    QStringLiteral("The Far Distance must be greater than the Near Distance.");
const QString coreMessage = QStringLiteral("The Core Diameter must be less than than the Max Diameter.");
const QString maxDiameterMessage =
    QStringLiteral("The Max Diameter must be greater than than the Core Diameter.");

} // namespace

class ParameterRulesTest : public testing::Test {
protected:
    void Set(std::int16_t tag, std::int32_t raw) { zentrova_.ParamUpdate(tag, raw); }

    void ExpectFits(std::int16_t tag, std::int32_t raw) {
        EXPECT_EQ(ParameterRules::Conflict(zentrova_, tag, raw), QString()) << tag << ": " << raw;
    }

    void ExpectConflict(std::int16_t tag, std::int32_t raw, const QString &message) {
        EXPECT_EQ(ParameterRules::Conflict(zentrova_, tag, raw), message) << tag << ": " << raw;
    }

    ClassZentrova zentrova_{ShippedPresetsFolder()}; // 6", 420", near 12", far 360"; 3" and 24"
};

TEST_F(ParameterRulesTest, HoldsEachValueToThoseBesideItWhateverTheMode) {
    for (const std::int32_t mode : {ManualMode, LinearMode, HyperbolicMode}) {
        SCOPED_TRACE(mode);
        Set(AnalogOutputMode, mode);

        ExpectFits(MinRange, 1200 - 106);
        ExpectConflict(MinRange, 1200 - 105, minRangeMessage);

        ExpectFits(MaxRange, 36000);
        ExpectConflict(MaxRange, 35999, maxRangeMessage);

        ExpectFits(NearDistance, 36000);
        ExpectConflict(NearDistance, 36001, nearAboveFarMessage);
        ExpectFits(NearDistance, 706);
        ExpectConflict(NearDistance, 705, nearBelowMinMessage);

        ExpectFits(FarDistance, 42000);
        ExpectConflict(FarDistance, 42001, farAboveMaxMessage);
        ExpectFits(FarDistance, 1200);

        ExpectFits(CoreDiameter, 2399);
        ExpectConflict(CoreDiameter, 2400, coreMessage);
        ExpectConflict(CoreDiameter, 2401, coreMessage);
        ExpectFits(MaxDiameter, 301);
        ExpectConflict(MaxDiameter, 300, maxDiameterMessage);
        ExpectConflict(MaxDiameter, 299, maxDiameterMessage);
    }
}

TEST_F(ParameterRulesTest, TakesAFarDistanceBelowTheNearOneInHyperbolicModeOnly) {
    for (const std::int32_t mode : {ManualMode, LinearMode}) {
        Set(AnalogOutputMode, mode);
        ExpectConflict(FarDistance, 1199, farBelowNearMessage);
    }
    Set(AnalogOutputMode, HyperbolicMode);
    ExpectFits(FarDistance, 1199);
    Set(MaxRange, 1000); // not compared with a value below the near distance
    ExpectFits(FarDistance, 1199);
}

TEST_F(ParameterRulesTest, TellsOfTheFirstOfTwoConflicts) {
    Set(FarDistance, 650);
    ExpectConflict(NearDistance, 651, nearAboveFarMessage);
    ExpectConflict(NearDistance, 650, nearBelowMinMessage);
}

TEST_F(ParameterRulesTest, HasNoRelationsForOtherValues) {
    for (std::int16_t tag = 0; tag < zentrova_.ParamCount(); ++tag) {
        const bool related = tag == MinRange || tag == MaxRange || tag == NearDistance ||
                             tag == FarDistance || tag == CoreDiameter || tag == MaxDiameter;
        if (!related) {
            ExpectFits(tag, -1000000);
            ExpectFits(tag, 1000000);
        }
    }
}

} // namespace ztv

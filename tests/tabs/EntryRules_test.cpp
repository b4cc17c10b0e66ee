#include "tabs/EntryRules.h"

#include "model/ParamDefines.h"
#include "tests/helpers/FakeLink.h"
#include "tests/helpers/Printers.h"
#include "tests/helpers/ScriptedDialogs.h"
#include "tests/helpers/TestPresets.h"

#include <gtest/gtest.h>

namespace ztv {

using namespace ParamDefines;

class EntryRulesTest : public testing::Test {
protected:
    EntryRulesTest() {
        QObject::connect(&rules_, &EntryRules::Written, &rules_,
                         [this](std::int16_t tag, const QString &text) {
                             written_.emplace_back(tag, text.toStdString());
                         });
    }

    void Set(std::int16_t tag, std::int32_t raw) { zentrova_.ParamUpdate(tag, raw); }
    std::int32_t Value(std::int16_t tag) const { return zentrova_.ParamValue(tag); }

    void ExpectAccepted(const char *text, std::int16_t tag, std::int32_t raw) {
        EXPECT_TRUE(rules_.ValidateAndWriteText(QString::fromUtf8(text), tag)) << text;
        EXPECT_EQ(Value(tag), raw) << text;
    }

    // Expects a refusal with the "between" box.
    void ExpectOutOfRange(const QString &text, std::int16_t tag, const QString &limits) {
        const std::int32_t before = Value(tag);
        dialogs_.ExpectNotice(QStringLiteral("Please enter a value between ") + limits, BoxIcon::None,
                              QString());
        EXPECT_FALSE(rules_.ValidateAndWriteText(text, tag)) << text.toStdString();
        EXPECT_TRUE(dialogs_.AllCame()) << text.toStdString();
        EXPECT_EQ(Value(tag), before);
    }

    void ExpectFits(std::int16_t tag, std::int32_t raw) {
        EXPECT_TRUE(rules_.CheckParamRelation(tag, raw)) << tag << ": " << raw;
    }

    void ExpectConflict(std::int16_t tag, std::int32_t raw, const QString &message) {
        dialogs_.ExpectNotice(message, BoxIcon::Exclamation, QStringLiteral("Invalid Value"));
        EXPECT_FALSE(rules_.CheckParamRelation(tag, raw)) << tag << ": " << raw;
        EXPECT_TRUE(dialogs_.AllCame()) << tag << ": " << raw;
    }

    ClassZentrova zentrova_{ShippedPresetsFolder()}; // 6", 420", near 12", far 360"; 3" and 24"
    ScriptedDialogs dialogs_;
    EntryRules rules_{zentrova_, dialogs_};
    std::vector<std::pair<int, std::string>> written_;
};

// Relations. ----------------------------------------------------------------------------------------

TEST_F(EntryRulesTest, ShowsWhyAValueDoesNotFitBesideTheOthers) {
    ExpectFits(MaxRange, 36000);
    ExpectConflict(MaxRange, 35999, QStringLiteral("The Max Range must be greater than the Far Distance."));
}

TEST_F(EntryRulesTest, OffersTheValueThatWouldJustDo) {
    Set(NearDistance, 20000);
    dialogs_.ExpectTextWith(QStringLiteral("Please enter a value of 198.94\" or lesser"),
                            BoxIcon::Exclamation, QStringLiteral("Invalid Value"));
    EXPECT_FALSE(rules_.ValidateAndWriteText(QStringLiteral("198.95"), MinRange));
    ExpectAccepted("198.94", MinRange, 19894);
    dialogs_.ExpectTextWith(QStringLiteral("Please enter a value of 200.00\" or greater"),
                            BoxIcon::Exclamation, QStringLiteral("Invalid Value"));
    EXPECT_FALSE(rules_.ValidateAndWriteText(QStringLiteral("199.99"), NearDistance));
}

// Texts. --------------------------------------------------------------------------------------------

TEST_F(EntryRulesTest, TakesANumberWithOrWithoutItsUnit) {
    ExpectAccepted("13.5\"", NearDistance, 1350);
    ExpectAccepted("14", NearDistance, 1400);
    ExpectAccepted(" 15.256 ", NearDistance, 1526);
    ExpectAccepted("1.5v", FarVoltage, 150);
    ExpectAccepted("2.5 V", FarVoltage, 250);
    ExpectAccepted("30%", 42, 30);
    ExpectAccepted("0.025S", 77, 25);
    ExpectAccepted("-1.25", 26, -125);
    ExpectAccepted("2.5", ManualOutput, 3);
}

TEST_F(EntryRulesTest, RefusesWhatIsNoNumberOrBeyondTheLimits) {
    const QString limits = QStringLiteral("6.00\" and 420.00\"");
    for (const char *text : {"", " ", "abc", "\"", "12,5", "1\"2", "12 in", "0x10", "nan", "inf", "--1"}) {
        ExpectOutOfRange(QString::fromUtf8(text), NearDistance, limits);
    }
    for (const char *text :
         {"5.99", "420.01", "-12", "1e9", "21474836.48", "1e300", "1e308", "-1e308", "1e999"}) {
        ExpectOutOfRange(QString::fromUtf8(text), NearDistance, limits);
    }
    ExpectOutOfRange(QStringLiteral("4096"), ManualOutput, QStringLiteral("0 and 4095"));
    ExpectOutOfRange(QStringLiteral("-0.01"), FarVoltage, QStringLiteral("0.00V and 10.00V"));
    EXPECT_TRUE(written_.empty());
    EXPECT_FALSE(zentrova_.FileChangesNeedSaving());
}

TEST_F(EntryRulesTest, TakesBothLimits) {
    ExpectAccepted("0", FarVoltage, 0);
    ExpectAccepted("10", FarVoltage, 1000);
    ExpectAccepted("4095.4", ManualOutput, 4095);
    ExpectOutOfRange(QStringLiteral("4095.5"), ManualOutput, QStringLiteral("0 and 4095"));
}

TEST_F(EntryRulesTest, HoldsAnOutOfRangeValueToNoRelation) {
    ExpectOutOfRange(QStringLiteral("5"), NearDistance, QStringLiteral("6.00\" and 420.00\"")); // one box
}

// Writes. -------------------------------------------------------------------------------------------

TEST_F(EntryRulesTest, SaysWhatWasWrittenAsItIsDisplayed) {
    ExpectAccepted("13.456", NearDistance, 1346);
    ExpectAccepted("13.46", NearDistance, 1346); // the unchanged value
    const std::vector<std::pair<int, std::string>> expected = {{28, "13.46\""}, {28, "13.46\""}};
    EXPECT_EQ(written_, expected);
}

TEST_F(EntryRulesTest, SendsOneWriteAndNoneForTheValueThatIsThere) {
    FakeLink link;
    zentrova_.ConnectTo(&link);
    ExpectAccepted("12", NearDistance, 1200);
    EXPECT_TRUE(link.writes.empty());
    EXPECT_FALSE(zentrova_.FileChangesNeedSaving());
    ExpectAccepted("13", NearDistance, 1300);
    const std::vector<std::pair<int, int>> expected = {{28, 1300}};
    EXPECT_EQ(link.writes, expected);
}

TEST_F(EntryRulesTest, DragsTheNearDistanceAfterTheFarOneInHyperbolicMode) {
    FakeLink link;
    zentrova_.ConnectTo(&link);
    Set(AnalogOutputMode, HyperbolicMode);
    Set(CoreDiameter, 300);
    Set(MaxDiameter, 2401);
    // Reports the row of the far distance before it writes the near one.
    link.onStart = [&] { EXPECT_EQ(written_.size(), link.writes.size() - 1U); };
    ExpectAccepted("300", FarDistance, 30000);
    const std::vector<std::pair<int, int>> expected = {{29, 30000}, {28, 28950}}; // 28949.5
    EXPECT_EQ(link.writes, expected);
    EXPECT_EQ(written_.size(), 1U);
    EXPECT_EQ(written_.front().first, 29);
    ExpectAccepted("300", FarDistance, 30000);
    EXPECT_EQ(link.writes.size(), 2U);

    Set(NearDistance, 30000);
    Set(MaxDiameter, 2400);
    ExpectAccepted("100", FarDistance, 10000); // below the near distance
    EXPECT_EQ(Value(NearDistance), 8950);
}

TEST_F(EntryRulesTest, LeavesTheNearDistanceAloneInOtherModesAndByOtherValues) {
    for (const std::int32_t mode : {ManualMode, LinearMode}) {
        Set(AnalogOutputMode, mode);
        ExpectAccepted("300", FarDistance, 30000);
        EXPECT_EQ(Value(NearDistance), 1200);
    }
    Set(AnalogOutputMode, HyperbolicMode);
    ExpectAccepted("4", CoreDiameter, 400);
    ExpectAccepted("25", MaxDiameter, 2500);
    EXPECT_EQ(Value(NearDistance), 1200);
}

} // namespace ztv

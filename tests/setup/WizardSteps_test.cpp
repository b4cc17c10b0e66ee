#include "setup/WizardSteps.h"

#include "model/ParamDefines.h"
#include "support/Fault.h"
#include "tests/helpers/FakeLink.h"
#include "tests/helpers/Printers.h"
#include "tests/helpers/TestPresets.h"

#include <gtest/gtest.h>

namespace ztv {

class WizardStepsTest : public testing::Test {
protected:
    using Writes = std::vector<std::pair<int, int>>;

    WizardStepsTest() {
        zentrova_.ParamUpdate(ParamDefines::MinRange, 1000);
        zentrova_.ParamUpdate(ParamDefines::MaxRange, 2000);
        zentrova_.ConnectTo(&link_);
        steps_.emplace(zentrova_);
    }

    void SetDistance(int raw) {
        zentrova_.ParamUpdate(ParamDefines::ActualDistance, raw);
        steps_->TakeReading();
    }

    void Next() { EXPECT_EQ(steps_->Next(entries_).value_or(QString()), QString()); }
    void Back() { steps_->Back(entries_); }
    void ExpectRefused(const char *message) {
        const WizardSteps::Step before = steps_->CurrentStep();
        EXPECT_EQ(steps_->Next(entries_).value_or(QString()), QString::fromLatin1(message));
        EXPECT_EQ(steps_->CurrentStep(), before);
    }
    void Record(WizardSteps::Place place) { steps_->Record(place, entries_); }

    void GoToMode(WizardSteps::Use use) {
        steps_.emplace(zentrova_);
        Next();
        entries_.use = use;
    }
    void GoToFarEnd() {
        GoToMode(WizardSteps::Use::Distance);
        Next();
    }
    void GoToCore(const char *core = "3.00", const char *max = "24.00") {
        GoToMode(WizardSteps::Use::Diameter);
        Next();
        entries_.coreDiameter = QString::fromLatin1(core);
        entries_.maxDiameter = QString::fromLatin1(max);
        Next();
    }

    ClassZentrova zentrova_{ShippedPresetsFolder()};
    FakeLink link_;
    std::optional<WizardSteps> steps_;
    WizardSteps::Entries entries_;
    const char *const notRecorded_ = "You must click the Record button to proceed.";
    const char *const tooNear_ =
        "The 'Distance To Max' reading must be greater than or equal to 6.00 Inches. Please "
        "decrease the 'Max Dia' setting or move Zentrova farther from core.";
};

TEST_F(WizardStepsTest, TakesTheDistanceRouteThereAndBack) {
    GoToFarEnd();
    EXPECT_EQ(steps_->CurrentStep(), 2);
    SetDistance(20000);
    Record(WizardSteps::AtFarEnd);
    entries_.voltage = {QStringLiteral("10.00"), QStringLiteral("0.00")};
    Next();
    EXPECT_EQ(steps_->CurrentStep(), 3);
    SetDistance(3000);
    Record(WizardSteps::AtNearEnd);
    Next();
    EXPECT_EQ(steps_->CurrentStep(), 7);
    for (const int step : {3, 2, 1, 0, 0}) {
        Back();
        EXPECT_EQ(steps_->CurrentStep(), step);
    }
}

TEST_F(WizardStepsTest, TakesTheDiameterRouteThereAndBack) {
    GoToCore();
    EXPECT_EQ(steps_->CurrentStep(), 5);
    SetDistance(6000);
    Record(WizardSteps::AtCore);
    Next();
    EXPECT_EQ(steps_->CurrentStep(), 6);
    entries_.drive = WizardSteps::DriveMode::Velocity;
    Next();
    EXPECT_EQ(steps_->CurrentStep(), 7);
    for (const int step : {6, 5, 4, 1, 0}) {
        Back();
        EXPECT_EQ(steps_->CurrentStep(), step);
    }
}

TEST_F(WizardStepsTest, EnablesEachWayWhereItLeadsOn) {
    EXPECT_FALSE(steps_->BackEnabled());
    EXPECT_TRUE(steps_->NextEnabled());
    GoToCore();
    EXPECT_TRUE(steps_->BackEnabled() && steps_->NextEnabled());
    SetDistance(6000);
    Record(WizardSteps::AtCore);
    Next();
    entries_.drive = WizardSteps::DriveMode::Torque;
    EXPECT_FALSE(steps_->FinishEnabled());
    Next();
    EXPECT_TRUE(steps_->FinishEnabled());
    EXPECT_FALSE(steps_->NextEnabled());
    EXPECT_TRUE(steps_->BackEnabled());
    Next(); // has no effect on the last step
    EXPECT_EQ(steps_->CurrentStep(), 7);
    Back();
    EXPECT_FALSE(steps_->FinishEnabled());
}

TEST_F(WizardStepsTest, WantsAMode) {
    Next();
    ExpectRefused("Please select a mode.");
}

TEST_F(WizardStepsTest, WantsARecordingThenAVoltageAtEachEnd) {
    GoToFarEnd();
    ExpectRefused(notRecorded_);
    entries_.voltage[0] = QStringLiteral("1.00");
    ExpectRefused(notRecorded_);
    SetDistance(20000);
    Record(WizardSteps::AtFarEnd);
    entries_.voltage[0].clear();
    ExpectRefused("Please enter an output voltage value.");
    entries_.voltage[0] = QStringLiteral("1.00");
    Next();
    ExpectRefused(notRecorded_);
    Record(WizardSteps::AtNearEnd);
    ExpectRefused("Please enter an output voltage value.");
    entries_.voltage[1] = QStringLiteral("1.00");
    Next();
    EXPECT_EQ(steps_->CurrentStep(), 7);
}

TEST_F(WizardStepsTest, WantsTwoDiametersOfWhichTheFullRollsIsTheGreater) {
    GoToMode(WizardSteps::Use::Diameter);
    Next();
    ExpectRefused("Please enter a value for Core Diameter.");
    entries_.maxDiameter = QStringLiteral("9.00");
    ExpectRefused("Please enter a value for Core Diameter.");
    entries_.maxDiameter.clear();
    entries_.coreDiameter = QStringLiteral("10.00");
    ExpectRefused("Please enter a value for Max Diameter.");
    for (const char *max : {"9.00", "10.00"}) { // as numbers: "9.00" is the greater text
        entries_.maxDiameter = QString::fromLatin1(max);
        ExpectRefused("The 'Max Diameter' must be greater than the 'Core Diameter'.");
    }
    entries_.maxDiameter = QStringLiteral("10.01");
    Next();
    EXPECT_EQ(steps_->Roll().coreDiameter, QStringLiteral("10.00"));
    EXPECT_EQ(steps_->Roll().maxDiameter, QStringLiteral("10.01"));
}

TEST_F(WizardStepsTest, WantsRoomForTheFullRoll) {
    GoToCore("3.00", "24.00");
    ExpectRefused(notRecorded_);
    SetDistance(1649);
    Record(WizardSteps::AtCore);
    EXPECT_EQ(steps_->Roll().distanceToMax, QStringLiteral("5.99"));
    ExpectRefused(tooNear_);
    SetDistance(1650);
    Record(WizardSteps::AtCore);
    EXPECT_EQ(steps_->Roll().distanceToMax, QStringLiteral("6.00"));
    Next();
    ExpectRefused("Please select the drive mode.");
}

TEST_F(WizardStepsTest, JudgesTheRoomByWhatIsShown) {
    GoToCore("1.00", "1.01");
    SetDistance(600);
    Record(WizardSteps::AtCore);
    EXPECT_EQ(steps_->Roll().distanceToMax, QStringLiteral("6.00")); // 5.995
    Next();
    EXPECT_EQ(steps_->CurrentStep(), 6);
}

TEST_F(WizardStepsTest, ShowsTheDistanceWithTwoDecimals) {
    EXPECT_EQ(steps_->Latest().shown, QStringLiteral("---.--"));
    EXPECT_EQ(steps_->Latest().raw, std::nullopt);
    SetDistance(5);
    EXPECT_EQ(steps_->Latest().shown, QStringLiteral("0.05"));
    EXPECT_EQ(steps_->Latest().raw, 5);
    const ChangedPresets coarser("UPDATE Parameters SET DecimalPlaces = 1 WHERE rowid = 1 + 32");
    ClassZentrova zentrova(coarser.Folder());
    WizardSteps steps(zentrova);
    zentrova.ParamUpdate(ParamDefines::ActualDistance, 123);
    steps.TakeReading();
    EXPECT_EQ(steps.Latest().shown, QStringLiteral("12.30"));
}

TEST_F(WizardStepsTest, TakesARecordBeforeTheFirstReadingForNone) {
    GoToFarEnd();
    Record(WizardSteps::AtFarEnd);
    EXPECT_EQ(steps_->Recorded(WizardSteps::AtFarEnd).shown, QStringLiteral("---.--"));
    ExpectRefused(notRecorded_);
    GoToCore();
    Record(WizardSteps::AtCore);
    EXPECT_EQ(steps_->Roll().distanceToMax, QStringLiteral("---.--"));
    ExpectRefused(notRecorded_);
}

TEST_F(WizardStepsTest, KeepsWhatWasRecordedAtTheEndsOnTheWayBack) {
    GoToFarEnd();
    SetDistance(20000);
    Record(WizardSteps::AtFarEnd);
    SetDistance(100);
    Back();
    Next();
    EXPECT_EQ(steps_->Recorded(WizardSteps::AtFarEnd).raw, 20000);
    EXPECT_EQ(steps_->Recorded(WizardSteps::AtFarEnd).shown, QStringLiteral("200.00"));
}

TEST_F(WizardStepsTest, ForgetsTheCoreWhenTheDiametersMayChange) {
    GoToCore();
    SetDistance(6000);
    Record(WizardSteps::AtCore);
    EXPECT_EQ(steps_->Roll().distanceToCore, QStringLiteral("60.00"));
    EXPECT_EQ(steps_->Roll().distanceToMax, QStringLiteral("49.50"));
    Next();
    Back(); // from the drive: the diameters stay
    EXPECT_EQ(steps_->Recorded(WizardSteps::AtCore).raw, 6000);
    Back();
    EXPECT_EQ(steps_->Recorded(WizardSteps::AtCore).raw, std::nullopt);
    EXPECT_EQ(steps_->Recorded(WizardSteps::AtCore).shown, QStringLiteral("---.--"));
    EXPECT_EQ(steps_->Roll().distanceToCore, QStringLiteral("---.--"));
    EXPECT_EQ(steps_->Roll().distanceToMax, QStringLiteral("---.--"));
    EXPECT_EQ(steps_->Roll().coreDiameter, QStringLiteral("3.00"));
    Next();
    ExpectRefused(notRecorded_);
}

TEST_F(WizardStepsTest, OpensTheRangeEachTimeAndPutsItBackOnCancel) {
    EXPECT_TRUE(link_.writes.empty());
    Next();
    EXPECT_EQ(link_.writes, (Writes{{24, 600}, {25, 42000}}));
    Back();
    zentrova_.ParamValue(ParamDefines::MaxRange, 30000);
    link_.writes.clear();
    Next();
    EXPECT_EQ(link_.writes, (Writes{{25, 42000}}));
    entries_.use = WizardSteps::Use::Diameter;
    Next();
    zentrova_.ParamValue(ParamDefines::MinRange, 700);
    link_.writes.clear();
    Back(); // back, now on the diameter route
    EXPECT_EQ(link_.writes, (Writes{{24, 600}}));
    link_.writes.clear();
    steps_->Cancel();
    EXPECT_EQ(link_.writes, (Writes{{24, 1000}, {25, 2000}}));
}

TEST_F(WizardStepsTest, ChangesTheStepAfterTheWrites) {
    std::vector<int> stepAtWrite;
    link_.onStart = [&] { stepAtWrite.push_back(steps_->CurrentStep()); };
    Next();
    EXPECT_EQ(stepAtWrite, (std::vector<int>{0, 0}));
}

TEST_F(WizardStepsTest, WritesTheRouteThatWasChosen) {
    const struct {
        WizardSteps::DriveMode drive;
        Writes writes;
    } rows[] = {{WizardSteps::DriveMode::Velocity, {{39, 2}, {29, 6000}, {28, 4950}, {25, 6500}, {24, 4450}}},
                {WizardSteps::DriveMode::Torque,
                 {{39, 1}, {29, 6000}, {28, 4950}, {25, 6500}, {24, 4450}, {37, 125}, {36, 1000}}}};
    for (const auto &row : rows) {
        zentrova_.ParamUpdate(ParamDefines::FarDistance, 1);
        GoToCore();
        SetDistance(6000);
        Record(WizardSteps::AtCore);
        Next();
        entries_.drive = row.drive;
        Next();
        entries_.save = false;
        link_.writes.clear();
        for (std::int16_t tag = 24; tag <= 39; ++tag) { // all writes have ended
            zentrova_.ParamWritePending(tag, false);
        }
        zentrova_.ParamUpdate(ParamDefines::NearDistance, 1);
        zentrova_.ParamUpdate(ParamDefines::FarDistance, 1);
        steps_->Finish(steps_->Outcome(entries_), entries_);
        EXPECT_EQ(link_.writes, row.writes);
    }
}

TEST_F(WizardStepsTest, WritesTheDistanceRouteWhateverElseWasChosenBefore) {
    GoToFarEnd();
    SetDistance(20000);
    Record(WizardSteps::AtFarEnd);
    SetDistance(3000);
    Record(WizardSteps::AtNearEnd);
    entries_.voltage = {QStringLiteral("10.00"), QStringLiteral("2.00")};
    entries_.drive = WizardSteps::DriveMode::Velocity;
    Next();
    Next();
    link_.writes.clear();
    steps_->Finish(steps_->Outcome(entries_), entries_);
    EXPECT_EQ(link_.writes, (Writes{{29, 20000}, {28, 3000}, {25, 20500}, {24, 2500}, {36, 200}, {1, 1}}));
}

using Changes = std::vector<WizardSteps::Change>;

TEST_F(WizardStepsTest, ListsWhatFinishWillWriteInItsOrder) {
    GoToFarEnd();
    link_.EndWrites(zentrova_);
    SetDistance(20000);
    Record(WizardSteps::AtFarEnd);
    SetDistance(3000);
    Record(WizardSteps::AtNearEnd);
    entries_.voltage = {QStringLiteral("9.50"), QStringLiteral("1.25")};
    link_.writes.clear();
    const auto text = [](const char *utf8) { return QString::fromUtf8(utf8); };
    EXPECT_EQ(steps_->Changes(entries_),
              (Changes{{text("Far Distance (29)"), text("360.00\""), text("200.00\"")},
                       {text("Near Distance (28)"), text("12.00\""), text("30.00\"")},
                       {text("Max Range (25)"), text("420.00\" (was 20.00\")"), text("205.00\"")},
                       {text("Min Range (24)"), text("6.00\" (was 10.00\")"), text("25.00\"")},
                       {text("Far Voltage (37)"), text("10.00V"), text("9.50V")},
                       {text("Near Voltage (36)"), text("0.00V"), text("1.25V")},
                       {text("Save Command (1)"), QString(), text("saves all")}}));
    EXPECT_TRUE(link_.writes.empty());
    steps_->Finish(steps_->Outcome(entries_), entries_);
    EXPECT_EQ(link_.writes,
              (Writes{{29, 20000}, {28, 3000}, {25, 20500}, {24, 2500}, {37, 950}, {36, 125}, {1, 1}}));
    link_.EndWrites(zentrova_);
    entries_.save = false;
    EXPECT_EQ(steps_->Changes(entries_), Changes());
}

TEST_F(WizardStepsTest, RefusesToListWhatCanNotBeWritten) {
    GoToFarEnd();
    SetDistance(20000);
    Record(WizardSteps::AtFarEnd);
    Record(WizardSteps::AtNearEnd);
    entries_.voltage = {QStringLiteral("9.50"), QStringLiteral("abc")};
    EXPECT_THROW(steps_->Changes(entries_), Fault);
}

} // namespace ztv

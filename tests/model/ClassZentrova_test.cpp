#include "model/ClassZentrova.h"

#include "model/ParamDefines.h"
#include "support/Fault.h"
#include "tests/helpers/FakeLink.h"
#include "tests/helpers/Printers.h"
#include "tests/helpers/TestPresets.h"

#include <QTemporaryDir>
#include <functional>
#include <gtest/gtest.h>
#include <utility>
#include <vector>

namespace ztv {

namespace {

constexpr std::int16_t setting = ParamDefines::NearDistance;
constexpr std::int16_t readOnlyRow = ParamDefines::ActualDistance;

} // namespace

class ClassZentrovaTest : public testing::Test {
protected:
    ClassZentrovaTest() { zentrova_.ConnectTo(&link_); }

    using Writes = std::vector<std::pair<int, int>>;

    FakeLink link_;
    ClassZentrova zentrova_{ShippedPresetsFolder()};
};

TEST_F(ClassZentrovaTest, SendsTheSameValueOnce) {
    const std::int32_t value = zentrova_.ParamValue(setting) + 1;
    zentrova_.ParamValue(setting, value);
    zentrova_.ParamValue(setting, value);
    EXPECT_EQ(link_.writes, (std::vector<std::pair<int, int>>{{setting, value}}));
    EXPECT_TRUE(zentrova_.FileChangesNeedSaving());
}

TEST_F(ClassZentrovaTest, ReportsOnceThatTheFileHasChangesAndOnceThatItHasNone) {
    std::vector<bool> turns;
    zentrova_.OnFileChangesTurned([&] { turns.push_back(zentrova_.FileChangesNeedSaving()); });
    zentrova_.ParamValue(setting, 1300);
    zentrova_.ParamValue(setting, 1400);
    EXPECT_EQ(turns, (std::vector<bool>{true}));
    const QTemporaryDir folder;
    EXPECT_FALSE(zentrova_.SaveFile(folder.filePath(QStringLiteral("roll.ztv"))));
    EXPECT_EQ(turns, (std::vector<bool>{true, false}));
    zentrova_.OnFileChangesTurned({});
    zentrova_.ParamValue(setting, 1500);
    EXPECT_EQ(turns.size(), 2U);
}

TEST_F(ClassZentrovaTest, DoesNothingForTheValueThatIsThere) {
    zentrova_.ParamValue(setting, zentrova_.ParamValue(setting));
    EXPECT_TRUE(link_.writes.empty());
    EXPECT_FALSE(zentrova_.FileChangesNeedSaving());
}

TEST_F(ClassZentrovaTest, DoesNothingForAReadOnlyRowOnlineAndOffline) {
    for (const bool open : {true, false}) {
        link_.open = open;
        const std::int32_t before = zentrova_.ParamValue(readOnlyRow);
        zentrova_.ParamValue(readOnlyRow, before + 1);
        EXPECT_EQ(zentrova_.ParamValue(readOnlyRow), before);
    }
    EXPECT_TRUE(link_.writes.empty());
    EXPECT_FALSE(zentrova_.FileChangesNeedSaving());
}

TEST_F(ClassZentrovaTest, OfflineChangesTheTableAlone) {
    link_.open = false;
    zentrova_.ParamValue(setting, 1300);
    EXPECT_EQ(zentrova_.ParamValue(setting), 1300);
    EXPECT_TRUE(zentrova_.FileChangesNeedSaving());
    EXPECT_FALSE(zentrova_.ParamWritePending(setting));
    EXPECT_TRUE(link_.writes.empty());
}

TEST_F(ClassZentrovaTest, MarksTheRowBeforeItSends) {
    link_.onStart = [&] { EXPECT_TRUE(zentrova_.ParamWritePending(setting)); };
    zentrova_.ParamValue(setting, 1300);
    EXPECT_EQ(zentrova_.ParamValue(setting), 1300);
    EXPECT_EQ(link_.writes, (Writes{{setting, 1300}}));
}

TEST_F(ClassZentrovaTest, KeepsAWaitingValueInTheTableAloneWhenTheLinkCloses) {
    link_.busy = true;
    zentrova_.ParamValue(setting, 1300);
    link_.open = false;
    link_.EndWrite(zentrova_);
    EXPECT_EQ(zentrova_.ParamValue(setting), 1300);
    EXPECT_FALSE(zentrova_.ParamWritePending(setting));
    EXPECT_FALSE(zentrova_.WritesWait());
    link_.open = true;
    zentrova_.SendWaitingWrites(); // a later connection sends nothing of before
    EXPECT_TRUE(link_.writes.empty());
    zentrova_.ParamUpdate(setting, 1200);
    EXPECT_EQ(zentrova_.ParamValue(setting), 1200);
}

TEST_F(ClassZentrovaTest, SendsTheValueThatWasAskedForLastInTheTurnOfTheFirst) {
    link_.busy = true;
    zentrova_.ParamValue(setting, 1300);
    zentrova_.ParamValue(ParamDefines::FarDistance, 30000);
    zentrova_.ParamValue(setting, 1400);
    EXPECT_EQ(zentrova_.ParamValue(setting), 1400);
    EXPECT_FALSE(zentrova_.ParamWritePending(setting)); // nothing of it is in flight
    link_.EndWrites(zentrova_);
    EXPECT_EQ(link_.writes, (Writes{{setting, 1400}, {ParamDefines::FarDistance, 30000}}));
}

TEST_F(ClassZentrovaTest, SendsALaterValueOfTheRowThatIsInFlight) {
    link_.holds = true;
    zentrova_.ParamValue(setting, 1300);
    zentrova_.ParamValue(setting, 1400);
    zentrova_.ParamValue(setting, 1500);
    link_.EndWrite(zentrova_);
    zentrova_.ParamUpdate(setting, 1300); // the poll between the two
    EXPECT_EQ(zentrova_.ParamValue(setting), 1500);
    link_.EndWrites(zentrova_);
    EXPECT_EQ(link_.writes, (Writes{{setting, 1300}, {setting, 1500}}));
}

TEST_F(ClassZentrovaTest, ACommandActsOnTheValuesThatWereAskedForBeforeIt) {
    link_.busy = true;
    zentrova_.ParamValue(setting, 1300);
    zentrova_.ParamValue(ParamDefines::SaveCommand, ParamDefines::StoreSettings);
    zentrova_.ParamValue(setting, 1400);
    zentrova_.ParamValue(setting, 1500);
    link_.EndWrites(zentrova_);
    EXPECT_EQ(
        link_.writes,
        (Writes{{setting, 1300}, {ParamDefines::SaveCommand, ParamDefines::StoreSettings}, {setting, 1500}}));
}

TEST_F(ClassZentrovaTest, SendsEachCommandThoughTheOneBeforeItStillWaits) {
    zentrova_.ParamUpdate(ParamDefines::ReinitCommand, ParamDefines::EnterBootLoader);
    link_.busy = true;
    zentrova_.ParamValue(ParamDefines::ReinitCommand, ParamDefines::NoCommand);
    zentrova_.ParamValue(ParamDefines::ReinitCommand, ParamDefines::EnterBootLoader);
    link_.EndWrites(zentrova_);
    EXPECT_EQ(link_.writes, (Writes{{ParamDefines::ReinitCommand, ParamDefines::NoCommand},
                                    {ParamDefines::ReinitCommand, ParamDefines::EnterBootLoader}}));
}

// A save that waits doesn't store the values that were asked for after it.
TEST_F(ClassZentrovaTest, SendsACommandAgainForTheValuesBehindTheOneThatWaits) {
    for (const std::int16_t command : {ParamDefines::SaveCommand, ParamDefines::ReinitCommand}) {
        link_.busy = true;
        zentrova_.ParamValue(setting, 1300);
        zentrova_.ParamValue(command, 1);
        zentrova_.ParamValue(command, 1); // a second press
        zentrova_.ParamValue(setting, 1400);
        zentrova_.ParamValue(command, 1);
        link_.EndWrites(zentrova_);
        EXPECT_EQ(std::exchange(link_.writes, {}),
                  (Writes{{setting, 1300}, {command, 1}, {setting, 1400}, {command, 1}}));
    }
}

TEST_F(ClassZentrovaTest, WriteEachReplacesNothingThatWaits) {
    link_.busy = true;
    for (const std::int32_t value : {1300, 1400, 1300}) {
        zentrova_.WriteEach(setting, value);
    }
    zentrova_.WriteEach(setting, 1300);     // is there already
    zentrova_.WriteEach(readOnlyRow, 4711); // never
    link_.EndWrites(zentrova_);
    EXPECT_EQ(link_.writes, (Writes{{setting, 1300}, {setting, 1400}, {setting, 1300}}));
}

TEST_F(ClassZentrovaTest, CallsOnceTheWritesAreSent) {
    int calls = 0;
    const auto count = [&calls] { ++calls; };
    zentrova_.WhenWritesAreSent(count);
    EXPECT_EQ(calls, 1) << "nothing waits";
    link_.holds = true;
    zentrova_.ParamValue(setting, 1300);
    zentrova_.WhenWritesAreSent(count);
    EXPECT_EQ(calls, 2) << "it is on the line";
    zentrova_.ParamValue(ParamDefines::FarDistance, 30000);
    zentrova_.WhenWritesAreSent(count);
    zentrova_.WhenWritesAreSent(count);
    EXPECT_EQ(calls, 2);
    link_.EndWrites(zentrova_);
    EXPECT_EQ(calls, 4);
    link_.busy = true;
    zentrova_.ParamValue(setting, 1400);
    zentrova_.WhenWritesAreSent(count);
    link_.open = false; // which drops it
    zentrova_.SendWaitingWrites();
    EXPECT_EQ(calls, 5);
}

TEST_F(ClassZentrovaTest, ACallOnceTheWritesAreSentMayWriteAgain) {
    link_.busy = true;
    zentrova_.ParamValue(setting, 1300);
    zentrova_.WhenWritesAreSent([this] {
        zentrova_.ParamValue(setting, 1400);
        zentrova_.WhenWritesAreSent([this] { zentrova_.ParamValue(ParamDefines::FarDistance, 30000); });
    });
    link_.EndWrites(zentrova_);
    EXPECT_EQ(link_.writes, (Writes{{setting, 1300}, {setting, 1400}, {ParamDefines::FarDistance, 30000}}));
}

TEST_F(ClassZentrovaTest, DropsThePollsValueWhileAWriteIsPending) {
    zentrova_.ParamValue(setting, 1300);
    zentrova_.ParamUpdate(setting, 1200);
    EXPECT_EQ(zentrova_.ParamValue(setting), 1300);
    zentrova_.ParamWritePending(setting, false);
    zentrova_.ParamUpdate(setting, 1200);
    EXPECT_EQ(zentrova_.ParamValue(setting), 1200);
}

TEST_F(ClassZentrovaTest, FillsReadOnlyRowsByThePollAndMarksNothingAsChanged) {
    zentrova_.ParamUpdate(readOnlyRow, 4711);
    EXPECT_EQ(zentrova_.ParamValue(readOnlyRow), 4711);
    EXPECT_FALSE(zentrova_.FileChangesNeedSaving());
}

TEST_F(ClassZentrovaTest, KeepsItsRowCountWhateverThePollSays) {
    zentrova_.ParamUpdate(ParamDefines::ParameterCount, 7);
    EXPECT_EQ(zentrova_.ParamCount(), 96);
}

TEST_F(ClassZentrovaTest, HasNoGroups) {
    for (std::int16_t tag = 0; tag < zentrova_.ParamCount(); ++tag) {
        EXPECT_EQ(zentrova_.ParamGroup(tag), QString());
    }
}

TEST_F(ClassZentrovaTest, FaultsOnARowThatThereIsNot) {
    for (const std::int16_t tag : {std::int16_t{-1}, zentrova_.ParamCount()}) {
        EXPECT_THROW(zentrova_.ParamValue(tag), Fault);
        EXPECT_THROW(zentrova_.ParamValue(tag, 1), Fault);
        EXPECT_THROW(zentrova_.ParamUpdate(tag, 1), Fault);
        EXPECT_THROW(zentrova_.ParamName(tag), Fault);
    }
}

TEST_F(ClassZentrovaTest, LooksUpTextsWithinTheBoundsOfTheTable) {
    EXPECT_EQ(zentrova_.ParamLookUp(7, 3), QStringLiteral("O1"));
    EXPECT_EQ(zentrova_.ParamLookUp(7, 5), QString());
    EXPECT_THROW(zentrova_.ParamLookUp(7, 6), Fault);
    EXPECT_THROW(zentrova_.ParamLookUp(7, -1), Fault);
    EXPECT_THROW(zentrova_.ParamLookUp(14, 0), Fault);
    EXPECT_THROW(zentrova_.ParamLookUp(-1, 0), Fault);
}

TEST_F(ClassZentrovaTest, HasTheTextsOfTheLine) {
    const char *baudRates[] = {"2400", "4800", "9600", "19200", "38400"};
    for (std::int16_t index = 0; index < 5; ++index) {
        EXPECT_EQ(zentrova_.BaudRateString(index), QString::fromLatin1(baudRates[index]));
    }
    const char *parities[] = {"N1", "N2", "E1", "O1"};
    for (std::int16_t index = 0; index < 4; ++index) {
        EXPECT_EQ(zentrova_.ParityStopString(index), QString::fromLatin1(parities[index]));
    }
    EXPECT_THROW(zentrova_.BaudRateString(5), Fault);
    EXPECT_THROW(zentrova_.ParityStopString(4), Fault);
}

TEST_F(ClassZentrovaTest, ListsTheEditsThatNoSensorAndNoFileHas) {
    using Tags = std::vector<std::int16_t>;
    link_.open = false;
    EXPECT_EQ(zentrova_.EditedRows(), Tags{});
    const std::int32_t before = zentrova_.ParamValue(setting);
    zentrova_.ParamValue(setting, before + 1);
    zentrova_.ParamValue(ParamDefines::FarDistance, 30000);
    zentrova_.ParamValue(ParamDefines::SaveCommand, 1); // a command is no setting
    EXPECT_EQ(zentrova_.EditedRows(), (Tags{setting, ParamDefines::FarDistance}));
    zentrova_.ParamValue(setting, before); // as it was
    EXPECT_EQ(zentrova_.EditedRows(), Tags{ParamDefines::FarDistance});
    zentrova_.ParamUpdate(ParamDefines::FarDistance, 29000); // a poll
    EXPECT_EQ(zentrova_.EditedRows(), Tags{});

    const QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("roll.ztv"));
    zentrova_.ParamValue(setting, before + 1);
    zentrova_.SaveFile(file);
    EXPECT_EQ(zentrova_.EditedRows(), Tags{});
    zentrova_.ParamValue(setting, before + 2);
    EXPECT_EQ(zentrova_.EditedRows(), Tags{setting});
    EXPECT_EQ(zentrova_.OpenFile(file).result, FileOpened::Whole);
    EXPECT_EQ(zentrova_.EditedRows(), Tags{});
}

TEST_F(ClassZentrovaTest, MarksAFailedWriteUntilAPollAFileOrAnotherWriteReplacesTheValue) {
    const QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("roll.ztv"));
    zentrova_.SaveFile(file);
    const std::function<void()> replacements[] = {
        [this] { zentrova_.ParamUpdate(setting, 1200); },
        [&] { zentrova_.OpenFile(file); },
        [this] { zentrova_.ParamValue(setting, zentrova_.ParamValue(setting) + 1); },
    };
    for (const auto &replace : replacements) {
        EXPECT_FALSE(zentrova_.ParamWriteFailed(setting));
        zentrova_.MarkWriteFailed(setting);
        EXPECT_TRUE(zentrova_.ParamWriteFailed(setting));
        EXPECT_FALSE(zentrova_.ParamWriteFailed(ParamDefines::FarDistance));
        replace();
        zentrova_.ParamWritePending(setting, false);
    }
    EXPECT_FALSE(zentrova_.ParamWriteFailed(setting));
}

TEST_F(ClassZentrovaTest, CarriesItsFlagsAndNotes) {
    EXPECT_FALSE(zentrova_.WriteAllPending());
    zentrova_.WriteAllPending(true);
    EXPECT_TRUE(zentrova_.WriteAllPending());
    zentrova_.FileNotes(QStringLiteral("line 4"));
    EXPECT_EQ(zentrova_.FileNotes(), QStringLiteral("line 4"));
}

} // namespace ztv

#include "model/ClassZentrova.h"

#include "model/ParamDefines.h"
#include "support/Fault.h"
#include "tests/helpers/FakeLink.h"
#include "tests/helpers/Printers.h"
#include "tests/helpers/TestPresets.h"

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

TEST_F(ClassZentrovaTest, DoesNothingForTheValueThatIsThere) {
    zentrova_.ParamValue(setting, zentrova_.ParamValue(setting));
    EXPECT_TRUE(link_.writes.empty());
    EXPECT_EQ(link_.waits, 0);
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

TEST_F(ClassZentrovaTest, WaitsThenMarksThenSendsThenStores) {
    const std::int32_t before = zentrova_.ParamValue(setting);
    link_.whileWaiting = [&] {
        EXPECT_FALSE(zentrova_.ParamWritePending(setting));
        EXPECT_EQ(zentrova_.ParamValue(setting), before);
    };
    link_.onStart = [&] {
        EXPECT_EQ(link_.waits, 1);
        EXPECT_TRUE(zentrova_.ParamWritePending(setting));
        EXPECT_EQ(zentrova_.ParamValue(setting), before);
    };
    zentrova_.ParamValue(setting, before + 5);
    EXPECT_EQ(zentrova_.ParamValue(setting), before + 5);
    EXPECT_EQ(link_.writes.size(), 1U);
}

TEST_F(ClassZentrovaTest, LeavesNoPendingMarkWhenTheLinkClosesDuringTheWait) {
    link_.whileWaiting = [&] { link_.open = false; };
    zentrova_.ParamValue(setting, 1300);
    EXPECT_EQ(zentrova_.ParamValue(setting), 1300);
    EXPECT_FALSE(zentrova_.ParamWritePending(setting));
    EXPECT_TRUE(link_.writes.empty());
}

TEST_F(ClassZentrovaTest, EndsAtTheValueThatWasAskedForLastWhileAnotherOneWaits) {
    link_.whileWaiting = [&] {
        link_.whileWaiting = {};
        zentrova_.ParamValue(setting, 1400);
    };
    zentrova_.ParamValue(setting, 1300);
    EXPECT_EQ(zentrova_.ParamValue(setting), 1400);
    EXPECT_EQ(link_.writes, (std::vector<std::pair<int, int>>{{setting, 1400}}));

    link_.whileWaiting = [&] { zentrova_.ParamValue(setting, 1400); }; // back to the value in the sensor
    zentrova_.ParamValue(setting, 1500);
    EXPECT_EQ(zentrova_.ParamValue(setting), 1400);
    EXPECT_EQ(link_.writes.size(), 1U);
}

TEST_F(ClassZentrovaTest, SendsAnotherRowsValueAskedForWhileOneWaits) {
    link_.whileWaiting = [&] {
        link_.whileWaiting = {};
        zentrova_.ParamValue(ParamDefines::FarDistance, 30000);
    };
    zentrova_.ParamValue(setting, 1300);
    EXPECT_EQ(link_.writes.size(), 2U);
    EXPECT_EQ(zentrova_.ParamValue(setting), 1300);
    EXPECT_EQ(zentrova_.ParamValue(ParamDefines::FarDistance), 30000);
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

TEST_F(ClassZentrovaTest, CarriesItsFlagsAndNotes) {
    EXPECT_FALSE(zentrova_.WriteAllPending());
    zentrova_.WriteAllPending(true);
    EXPECT_TRUE(zentrova_.WriteAllPending());
    zentrova_.FileNotes(QStringLiteral("line 4"));
    EXPECT_EQ(zentrova_.FileNotes(), QStringLiteral("line 4"));
}

} // namespace ztv

#include "tabs/CheckoutControl.h"

#include "model/ParamDefines.h"
#include "support/Fault.h"
#include "tests/helpers/FakeLink.h"
#include "tests/helpers/Printers.h"
#include "tests/helpers/TestPresets.h"

#include <gtest/gtest.h>
#include <utility>
#include <vector>

namespace ztv {

class CheckoutControlTest : public testing::Test {
protected:
    using Writes = std::vector<std::pair<int, int>>;

    // Sets values that no option writes, so that each option writes.
    CheckoutControlTest() {
        for (const std::int16_t tag : {ParamDefines::AnalogOutputMode, ParamDefines::ManualOutput,
                                       ParamDefines::MaxRange, ParamDefines::FarDistance}) {
            zentrova_.ParamUpdate(tag, 7);
        }
        zentrova_.ConnectTo(&link_);
    }

    Writes Take() { return std::exchange(link_.writes, {}); }

    // Ends the write, as the sensor's confirmation does.
    void Confirm() {
        for (std::int16_t tag = 0; tag < zentrova_.ParamCount(); ++tag) {
            zentrova_.ParamWritePending(tag, false);
        }
    }

    FakeLink link_;
    ClassZentrova zentrova_{ShippedPresetsFolder()};
    CheckoutControl control_{zentrova_};
};

TEST_F(CheckoutControlTest, ForcesTheOutputToEachVoltage) {
    const int counts[] = {0, 1024, 2048, 3072, 4095};
    for (int index = 0; index < 5; ++index) {
        Confirm();
        zentrova_.ParamUpdate(39, 2);
        zentrova_.ParamUpdate(40, 7);
        control_.SetAnalogOut(index);
        EXPECT_EQ(Take(), (Writes{{39, 0}, {40, counts[index]}}));
    }
}

TEST_F(CheckoutControlTest, LetsTheOutputFollowTheDistanceForAnyOtherIndex) {
    for (const int index : {5, 6, -1, 32767}) {
        Confirm();
        zentrova_.ParamUpdate(39, 2);
        control_.SetAnalogOut(index);
        EXPECT_EQ(Take(), (Writes{{39, 1}})) << index;
    }
}

TEST_F(CheckoutControlTest, WritesTheEndsOfARangeInTheOrderOfTheOption) {
    control_.SetRange(0);
    EXPECT_EQ(Take(), (Writes{{29, 6000}, {25, 6200}}));
    control_.SetRange(1);
    EXPECT_EQ(Take(), (Writes{{25, 42000}, {29, 42000}}));
    EXPECT_THROW(control_.SetRange(2), Fault);
    EXPECT_THROW(control_.SetRange(-1), Fault);
}

TEST_F(CheckoutControlTest, CountsTheOptionsInTurn) {
    const int next[] = {1, 2, 3, 4, 5, 0};
    for (int index = 0; index < 6; ++index) {
        EXPECT_EQ(CheckoutControl::NextOption(index), next[index]);
    }
    EXPECT_EQ(CheckoutControl::NextOption(99), 0);
}

TEST_F(CheckoutControlTest, SwitchesARelayOnOnlyFromNothing) {
    for (const int relay : {0, 1}) {
        SCOPED_TRACE(relay);
        const std::pair<int, int> turns[] = {{0, 1}, {1, 0}, {2, 0}, {-1, 0}, {65535, 0}};
        for (const auto &[before, after] : turns) {
            Confirm();
            zentrova_.ParamUpdate(static_cast<std::int16_t>(54 + relay), before);
            control_.ToggleRelay(relay);
            EXPECT_EQ(Take(), (Writes{{54 + relay, after}}));
        }
    }
}

TEST_F(CheckoutControlTest, SwitchesTheClockOutputOnOnlyFromNothing) {
    for (const auto &[before, after] : {std::pair(0, 1), std::pair(1, 0), std::pair(5, 0)}) {
        Confirm();
        zentrova_.ParamUpdate(23, before);
        control_.ToggleClockOut();
        EXPECT_EQ(Take(), (Writes{{23, after}}));
    }
}

TEST_F(CheckoutControlTest, Reinitialises) {
    control_.Reinitialise();
    EXPECT_EQ(Take(), (Writes{{3, 1}}));
}

TEST_F(CheckoutControlTest, SendsEachClickThatIsMadeDuringAWriteInItsTurn) {
    link_.holds = true;
    control_.SetAnalogOut(4);
    control_.SetAnalogOut(2);
    control_.ToggleRelay(0);
    control_.ToggleRelay(0);
    EXPECT_EQ(link_.writes, (Writes{{39, 0}}));
    link_.EndWrites(zentrova_);
    EXPECT_EQ(link_.writes, (Writes{{39, 0}, {40, 4095}, {40, 2048}, {54, 1}, {54, 0}}));
    EXPECT_EQ(zentrova_.ParamValue(40), 2048);
}

TEST_F(CheckoutControlTest, StaysInTheTableWhileOffline) {
    link_.open = false;
    control_.SetAnalogOut(4);
    control_.ToggleRelay(1);
    EXPECT_TRUE(Take().empty());
    EXPECT_EQ(zentrova_.ParamValue(39), 0);
    EXPECT_EQ(zentrova_.ParamValue(40), 4095);
    EXPECT_EQ(zentrova_.ParamValue(55), 1);
    EXPECT_TRUE(zentrova_.FileChangesNeedSaving());
}

TEST_F(CheckoutControlTest, KeepsTheRestInTheTableWhenTheUserGoesOfflineMeanwhile) {
    link_.holds = true;
    control_.SetAnalogOut(4);
    link_.open = false;
    link_.EndWrites(zentrova_);
    EXPECT_EQ(link_.writes, (Writes{{39, 0}}));
    EXPECT_EQ(zentrova_.ParamValue(40), 4095);
}

} // namespace ztv

#include "setup/AskedValues.h"

#include "model/ParamDefines.h"
#include "tests/helpers/FakeLink.h"
#include "tests/helpers/TestPresets.h"

#include <gtest/gtest.h>

namespace ztv {

class AskedValuesTest : public testing::Test {
protected:
    AskedValuesTest() { zentrova_.ConnectTo(&link_); }

    void Poll(std::int16_t tag, std::int32_t value) {
        zentrova_.ParamUpdate(tag, value);
        asked_.Judge(zentrova_);
    }
    void AskForEnds() { asked_.Ask({{29, 20000}, {28, 3000}, {1, 1}}); }
    using Value = AskedValues::Value;

    ClassZentrova zentrova_{ShippedPresetsFolder()};
    FakeLink link_;
    AskedValues asked_;
};

TEST_F(AskedValuesTest, SaysWhatTheSensorHoldsInsteadOfEachValue) {
    AskForEnds();
    EXPECT_TRUE(asked_.Judged().empty()); // before a poll
    zentrova_.ParamUpdate(28, 3000);
    Poll(29, 30000);
    EXPECT_EQ(asked_.Judged(), (std::vector<Value>{{{29, 20000}, 30000, false}, {{28, 3000}, 3000, true}}));
}

TEST_F(AskedValuesTest, HasNothingToSayOnceTheSensorHoldsAllOfThem) {
    AskForEnds();
    zentrova_.ParamUpdate(28, 3000);
    Poll(29, 30000);
    Poll(29, 20000);
    EXPECT_TRUE(asked_.Judged().empty());
    Poll(29, 777); // a later change by somebody else
    EXPECT_TRUE(asked_.Judged().empty());
}

TEST_F(AskedValuesTest, AValueOnceTakenStaysSo) {
    AskForEnds();
    zentrova_.ParamUpdate(28, 3000);
    Poll(29, 30000);
    Poll(28, 4000);
    EXPECT_TRUE(asked_.Judged().back().isTaken);
}

TEST_F(AskedValuesTest, ANegativeValueIsTakenAsItsWord) {
    asked_.Ask({{ParamDefines::NearVoltage, -250}, {ParamDefines::FarVoltage, -251}});
    zentrova_.ParamUpdate(ParamDefines::FarVoltage, 0);
    Poll(ParamDefines::NearVoltage, 65536 - 250);
    EXPECT_TRUE(asked_.Judged().front().isTaken);
    EXPECT_FALSE(asked_.Judged().back().isTaken);
}

TEST_F(AskedValuesTest, WaitsForTheWrites) {
    link_.holds = true;
    AskForEnds();
    zentrova_.ParamValue(29, 20000);
    zentrova_.ParamValue(28, 3000);
    asked_.Judge(zentrova_); // one on the line, one waiting
    EXPECT_TRUE(asked_.Judged().empty());
    link_.EndWrite(zentrova_);
    Poll(29, 30000); // one on the line
    EXPECT_TRUE(asked_.Judged().empty());
    link_.EndWrite(zentrova_);
    zentrova_.WriteAllPending(true);
    Poll(29, 30000);
    EXPECT_TRUE(asked_.Judged().empty());
    zentrova_.WriteAllPending(false);
    Poll(29, 30000);
    EXPECT_EQ(asked_.Judged().front(), (Value{{29, 20000}, 30000, false}));
}

TEST_F(AskedValuesTest, AnotherValueThatIsWrittenSinceEndsTheMatter) {
    AskForEnds();
    zentrova_.ParamUpdate(28, 4000);
    Poll(29, 30000);
    asked_.Written(29, 20000); // the value itself, once more
    EXPECT_EQ(asked_.Judged().size(), 2U);
    asked_.Written(29, 25000);
    EXPECT_EQ(asked_.Judged(), (std::vector<Value>{{{28, 3000}, 4000, false}}));
    asked_.Written(28, 4001);
    EXPECT_TRUE(asked_.Judged().empty());
}

TEST_F(AskedValuesTest, AnotherSensorWasNotAskedForThem) {
    AskForEnds();
    Poll(29, 30000);
    Poll(ParamDefines::SerialNumber, 4711);
    EXPECT_TRUE(asked_.Judged().empty());
    Poll(29, 31000);
    EXPECT_TRUE(asked_.Judged().empty());
}

TEST_F(AskedValuesTest, ALaterRunReplacesTheValues) {
    AskForEnds();
    Poll(29, 30000);
    asked_.Ask({{24, 1000}});
    EXPECT_TRUE(asked_.Judged().empty());
    Poll(24, 600);
    EXPECT_EQ(asked_.Judged(), (std::vector<Value>{{{24, 1000}, 600, false}}));
    asked_.Forget();
    EXPECT_TRUE(asked_.Judged().empty());
}

} // namespace ztv

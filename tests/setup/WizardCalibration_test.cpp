#include "setup/WizardCalibration.h"

#include "model/ParamDefines.h"
#include "support/Fault.h"
#include "tests/helpers/FakeLink.h"
#include "tests/helpers/Printers.h"
#include "tests/helpers/TestPresets.h"

#include <gtest/gtest.h>

namespace ztv {

using namespace WizardCalibration;

class WizardCalibrationTest : public testing::Test {
protected:
    using Writes = std::vector<std::pair<int, int>>;

    // Fills the table with other values than those to come, so that each of these is written.
    void SetUp() override {
        for (std::int16_t tag = 24; tag <= 39; ++tag) {
            zentrova_.ParamUpdate(tag, 7);
        }
        zentrova_.ConnectTo(&link_);
    }

    void Write(const Settings &settings, bool save = true) {
        link_.writes.clear();
        WizardCalibration::Write(zentrova_, settings, save);
    }

    Settings Between(int nearDistance, int farDistance) {
        return ForDistance(zentrova_, {.farRaw = farDistance,
                                       .nearRaw = nearDistance,
                                       .farVoltage = QStringLiteral("10.00"),
                                       .nearVoltage = QStringLiteral("0.00")});
    }

    ClassZentrova zentrova_{ShippedPresetsFolder()};
    FakeLink link_;
    const Roll roll_{QStringLiteral("3.00"), QStringLiteral("24.00"), QStringLiteral("60.00"),
                     QStringLiteral("49.50")};
};

TEST_F(WizardCalibrationTest, WritesTheDistanceRouteInItsOrder) {
    Write(ForDistance(zentrova_, {.farRaw = 20000,
                                  .nearRaw = 3000,
                                  .farVoltage = QStringLiteral("9.50"),
                                  .nearVoltage = QStringLiteral("1.25")}));
    EXPECT_EQ(
        link_.writes,
        (Writes{{39, 1}, {29, 20000}, {28, 3000}, {25, 20500}, {24, 2500}, {37, 950}, {36, 125}, {1, 1}}));
}

TEST_F(WizardCalibrationTest, WritesTheTorqueRouteInItsOrder) {
    Write(ForTorque(zentrova_, roll_));
    EXPECT_EQ(
        link_.writes,
        (Writes{{39, 1}, {29, 6000}, {28, 4950}, {25, 6500}, {24, 4450}, {37, 125}, {36, 1000}, {1, 1}}));
}

TEST_F(WizardCalibrationTest, WritesTheVelocityRouteInItsOrder) {
    Write(ForVelocity(zentrova_, roll_));
    EXPECT_EQ(link_.writes, (Writes{{39, 2},
                                    {33, 300},
                                    {34, 2400},
                                    {29, 6000},
                                    {28, 4950},
                                    {25, 6500},
                                    {24, 4450},
                                    {37, 1000},
                                    {36, 0},
                                    {1, 1}}));
}

TEST_F(WizardCalibrationTest, SavesOnlyIfWanted) {
    Write(ForTorque(zentrova_, roll_), false);
    EXPECT_EQ(link_.writes.size(), 7U);
    EXPECT_EQ(link_.writes.back(), (std::pair{36, 1000}));
}

TEST_F(WizardCalibrationTest, GivesBothEndsTheirMarginUpToThePresetsOfTheDistances) {
    const int farPreset = zentrova_.ParamPreset(ParamDefines::FarDistance);
    const int nearPreset = zentrova_.ParamPreset(ParamDefines::NearDistance);
    const int maxPreset = zentrova_.ParamPreset(ParamDefines::MaxRange);
    const int minPreset = zentrova_.ParamPreset(ParamDefines::MinRange);
    ASSERT_NE(farPreset, maxPreset);
    ASSERT_NE(nearPreset, minPreset);
    const struct {
        int nearDistance, farDistance, minRange, maxRange;
    } rows[] = {{nearPreset + 500, farPreset - 500, nearPreset, farPreset},
                {nearPreset + 499, farPreset - 499, minPreset, maxPreset},
                {nearPreset + 501, farPreset - 501, nearPreset + 1, farPreset - 1},
                {nearPreset, farPreset, minPreset, maxPreset},
                {0, 60000, minPreset, maxPreset}};
    for (const auto &row : rows) {
        Write(Between(row.nearDistance, row.farDistance));
        EXPECT_EQ(zentrova_.ParamValue(ParamDefines::MinRange), row.minRange) << row.nearDistance;
        EXPECT_EQ(zentrova_.ParamValue(ParamDefines::MaxRange), row.maxRange) << row.farDistance;
    }
}

TEST_F(WizardCalibrationTest, TakesTheDistancesForTheMarginsFromTheTable) {
    link_.onStart = [this] {
        if (link_.writes.back().first == ParamDefines::NearDistance) {
            link_.onStart = {};
            zentrova_.ParamWritePending(ParamDefines::FarDistance, false);
            zentrova_.ParamUpdate(ParamDefines::FarDistance, 15000); // the value that the sensor reports
        }
    };
    Write(Between(3000, 20000));
    EXPECT_EQ(zentrova_.ParamValue(ParamDefines::MaxRange), 15500);
}

TEST_F(WizardCalibrationTest, WritesDistancesInTheWrongOrderAsRecorded) {
    Write(Between(20000, 3000));
    EXPECT_EQ(
        link_.writes,
        (Writes{{39, 1}, {29, 3000}, {28, 20000}, {25, 3500}, {24, 19500}, {37, 1000}, {36, 0}, {1, 1}}));
}

TEST_F(WizardCalibrationTest, WritesOnlyWhatDiffers) {
    Write(ForTorque(zentrova_, roll_));
    zentrova_.ParamUpdate(ParamDefines::NearVoltage, 0);
    zentrova_.ParamWritePending(ParamDefines::NearVoltage, false);
    zentrova_.ParamUpdate(ParamDefines::NearVoltage, 0);
    Write(ForTorque(zentrova_, roll_));
    EXPECT_EQ(link_.writes, (Writes{{36, 1000}}));
}

TEST_F(WizardCalibrationTest, ListsWhatItWouldWriteWithoutWritingIt) {
    const Settings all[] = {Between(3000, 20000), Between(20000, 3000), Between(600, 42000),
                            ForTorque(zentrova_, roll_), ForVelocity(zentrova_, roll_)};
    for (const Settings &settings : all) {
        for (const bool save : {true, false}) {
            SetUp(); // all values differ, so that each is written
            zentrova_.ParamUpdate(ParamDefines::SaveCommand, 0);
            link_.writes.clear();
            const std::vector<ParameterValue> values = ValuesOf(zentrova_, settings, save);
            EXPECT_TRUE(link_.writes.empty());
            Write(settings, save);
            Writes listed;
            for (const ParameterValue &value : values) {
                listed.emplace_back(value.tag, value.value);
            }
            EXPECT_EQ(link_.writes, listed);
            link_.EndWrites(zentrova_);
            zentrova_.ForgetPendingWrites();
        }
    }
}

TEST_F(WizardCalibrationTest, RefusesWhatIsNoNumberOrFitsNoRegisterBeforeTheFirstWrite) {
    for (const char *voltage : {"abc", "", "99999.00", "1e300"}) {
        const Ends ends{.farRaw = 20000,
                        .nearRaw = 3000,
                        .farVoltage = QStringLiteral("1.00"),
                        .nearVoltage = QString::fromLatin1(voltage)};
        EXPECT_THROW(ForDistance(zentrova_, ends), Fault) << voltage;
    }
    EXPECT_TRUE(link_.writes.empty());
}

TEST_F(WizardCalibrationTest, TakesAVoltageOutsideTheRangeAsItIs) {
    const Ends ends{.farRaw = 20000,
                    .nearRaw = 3000,
                    .farVoltage = QStringLiteral("1.00"),
                    .nearVoltage = QStringLiteral("-2.50")};
    EXPECT_EQ(ForDistance(zentrova_, ends).nearVoltage, -250);
}

TEST(TorqueVoltageTest, IsTheNearestWholeNumberWithAHalfToTheEvenOne) {
    const struct {
        int core, max, voltage;
    } rows[] = {{300, 2400, 125},     {100, 300, 333},    {500, 800, 625},  {200, 300, 667},
                {100, 1600, 62},      {300, 1600, 188},   {500, 1600, 312}, {1, 2000, 0},
                {3, 2000, 2},         {5, 2000, 2},       {1, 20000, 0},    {1, 1999, 1},
                {19999, 20000, 1000}, {1999, 2000, 1000}, {1997, 2000, 998}};
    for (const auto &row : rows) {
        EXPECT_EQ(TorqueVoltage(row.core, row.max), row.voltage) << row.core << " / " << row.max;
    }
    EXPECT_THROW(TorqueVoltage(1, 0), Fault);
}

TEST(DistanceToMaxTest, IsWhereTheFullRollsSurfaceIs) {
    const auto distance = [](const char *core, const char *coreDiameter, const char *maxDiameter) {
        return DistanceToMax(QString::fromLatin1(core), QString::fromLatin1(coreDiameter),
                             QString::fromLatin1(maxDiameter));
    };
    EXPECT_EQ(distance("60.00", "3.00", "24.00"), QStringLiteral("49.50"));
    EXPECT_EQ(distance("60.00", "3.00", "24.01"), QStringLiteral("49.50")); // 49.495, away from zero
    EXPECT_EQ(distance("5.00", "3.00", "24.00"), QStringLiteral("-5.50"));
    EXPECT_EQ(distance("10", "1", "2"), QStringLiteral("9.50"));
}

TEST(DistanceToMaxTest, IsJudgedAsItIsShown) {
    EXPECT_TRUE(LeavesRoom(QStringLiteral("6.00")));
    EXPECT_FALSE(LeavesRoom(QStringLiteral("5.99")));
    EXPECT_FALSE(LeavesRoom(QStringLiteral("-6.00")));
    const QString shown =
        DistanceToMax(QStringLiteral("5.996"), QStringLiteral("1.00"), QStringLiteral("1.00"));
    EXPECT_EQ(shown, QStringLiteral("6.00"));
    EXPECT_TRUE(LeavesRoom(shown));
}

} // namespace ztv

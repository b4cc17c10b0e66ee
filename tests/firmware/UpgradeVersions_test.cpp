#include "firmware/UpgradeVersions.h"

#include "model/ParamDefines.h"
#include "tests/helpers/Printers.h"
#include "tests/helpers/TestPresets.h"

#include <gtest/gtest.h>

namespace ztv {

namespace {

class UpgradeVersionsTest : public testing::Test {
protected:
    // The first read after going online, of that sensor.
    void Read(int serialNumber, int version) {
        zentrova_.ParamUpdate(ParamDefines::SerialNumber, serialNumber);
        zentrova_.ParamUpdate(ParamDefines::FirmwareVersion, version);
        Q_EMIT link_.FirstReadComplete();
    }

    ClassZentrova zentrova_{ShippedPresetsFolder()};
    LinkSession link_{zentrova_,
                      {.deviceOfPort = [](std::int16_t) { return QString(); },
                       .askDirection = [] { return ConnectChoice::Cancel; }}};
    UpgradeVersions versions_{link_, zentrova_};
};

} // namespace

TEST_F(UpgradeVersionsTest, KnowsBothWhenTheSensorIsReadAgain) {
    int known = 0;
    QObject::connect(&versions_, &UpgradeVersions::ChangeKnown, [&known] { ++known; });
    Read(10427, 214);
    versions_.UpgradeStarted();
    versions_.UpgradeEnded(true);
    EXPECT_EQ(versions_.Change(), QString());
    Read(10427, 300);
    EXPECT_EQ(versions_.Change(), QStringLiteral("2.14 -> 3.00"));
    Read(10427, 301);
    EXPECT_EQ(versions_.Change(), QStringLiteral("2.14 -> 3.00")) << "changed otherwise since";
    EXPECT_EQ(known, 1);
}

// The table has the presets.
TEST_F(UpgradeVersionsTest, ASensorThatWasNeverReadHasNoVersionBefore) {
    versions_.UpgradeStarted();
    versions_.UpgradeEnded(true);
    Read(10427, 300);
    EXPECT_EQ(versions_.Change(), QString());
}

TEST_F(UpgradeVersionsTest, AnotherSensorHasNotBeenUpgraded) {
    Read(10427, 214);
    versions_.UpgradeStarted();
    versions_.UpgradeEnded(true);
    Read(10428, 300);
    EXPECT_EQ(versions_.Change(), QString());
    Read(10427, 300);
    EXPECT_EQ(versions_.Change(), QStringLiteral("2.14 -> 3.00"));
}

TEST_F(UpgradeVersionsTest, AnUpgradeThatFailedChangesNoVersion) {
    Read(10427, 214);
    versions_.UpgradeStarted();
    versions_.UpgradeEnded(false);
    Read(10427, 214);
    EXPECT_EQ(versions_.Change(), QString());
}

TEST_F(UpgradeVersionsTest, TheNextUpgradeForgetsTheLast) {
    Read(10427, 214);
    versions_.UpgradeStarted();
    versions_.UpgradeEnded(true);
    Read(10427, 300);
    versions_.UpgradeStarted();
    EXPECT_EQ(versions_.Change(), QString());
}

} // namespace ztv

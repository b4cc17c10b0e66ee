#include "link/FailureText.h"

#include "model/ParamDefines.h"
#include "tests/helpers/Printers.h"
#include "tests/helpers/TestPresets.h"

#include <gtest/gtest.h>

namespace ztv {

class FailureTextTest : public testing::Test {
protected:
    void Poll() {
        sensor_.Polled(zentrova_.ParamCount(),
                       [this](std::int16_t tag) { return zentrova_.ParamPreset(tag); });
    }
    QString OfWrite(std::int16_t tag, LinkStatus status) const {
        return FailureText::OfWrite(zentrova_, sensor_, tag, status);
    }

    ClassZentrova zentrova_{ShippedPresetsFolder()};
    SensorValues sensor_;
};

TEST_F(FailureTextTest, NamesTheParameterTheValueTheReasonAndWhatTheSensorHolds) {
    Poll();
    sensor_.Confirmed(ParamDefines::FarDistance, 30000);
    zentrova_.ParamValue(ParamDefines::FarDistance, 32000);
    EXPECT_EQ(OfWrite(ParamDefines::FarDistance, LinkStatus::SlaveDeviceBusy),
              QStringLiteral("Far Distance (29) = 320.00\" was not taken (Slave Device Busy). The sensor has "
                             "300.00\"."));
}

TEST_F(FailureTextTest, DoesNotClaimThatAWriteWithoutAGoodReplyWasNotExecuted) {
    Poll();
    sensor_.Confirmed(ParamDefines::FarDistance, 30000);
    zentrova_.ParamValue(ParamDefines::FarDistance, 32000);
    for (const LinkStatus status :
         {LinkStatus::Timeout, LinkStatus::CrcError, LinkStatus::UnexpectedResponse, LinkStatus::MissingBytes,
          LinkStatus::WriteError, LinkStatus::ReadError}) {
        EXPECT_EQ(OfWrite(ParamDefines::FarDistance, status),
                  QStringLiteral("Far Distance (29) = 320.00\" was not confirmed (%1). The sensor had "
                                 "300.00\" when it was last read.")
                      .arg(MbaxpErrorDesc(status)));
    }
    EXPECT_TRUE(OfWrite(ParamDefines::SaveCommand, LinkStatus::Timeout)
                    .endsWith(QStringLiteral(" was not confirmed (Timeout).")));
}

TEST_F(FailureTextTest, SaysThatTheSensorsValueIsNotKnownBeforeAPollOfThisConnection) {
    const QString unknown = QStringLiteral(
        "Far Distance (29) = 360.00\" was not taken (Illegal Data Address). The value that the sensor has "
        "isn't known.");
    EXPECT_EQ(OfWrite(ParamDefines::FarDistance, LinkStatus::IllegalDataAddress), unknown);
    Poll();
    sensor_.Outdate();
    EXPECT_EQ(OfWrite(ParamDefines::FarDistance, LinkStatus::IllegalDataAddress), unknown);
}

TEST_F(FailureTextTest, SaysOfACommandOnlyThatItWasNotTaken) {
    Poll();
    const QString text = OfWrite(ParamDefines::SaveCommand, LinkStatus::AnotherSensor);
    EXPECT_TRUE(text.endsWith(QStringLiteral("was not taken (Another sensor: go offline and online).")))
        << text.toStdString();
}

TEST_F(FailureTextTest, CountsTheValuesOfADownload) {
    EXPECT_EQ(
        FailureText::OfDownload(95, LinkStatus::Timeout),
        QStringLiteral("The 95 values were not confirmed (Timeout). The values read next are those that "
                       "the sensor holds."));
}

TEST_F(FailureTextTest, NamesThePortAndThoseThatThereAre) {
    FailureText::Port port{
        .number = 9, .device = QStringLiteral("/dev/ttyS8"), .isThere = false, .others = {}};
    EXPECT_EQ(FailureText::OfPort(port),
              QStringLiteral("Port 9 is /dev/ttyS8, which isn't connected. There are no serial ports."));
    port.others = {QStringLiteral("/dev/ttyUSB0 (FTDI adapter)"), QStringLiteral("/dev/ttyS0")};
    EXPECT_EQ(FailureText::OfPort(port),
              QStringLiteral("Port 9 is /dev/ttyS8, which isn't connected. There are: /dev/ttyUSB0 (FTDI "
                             "adapter), /dev/ttyS0."));
    port.isThere = true;
    EXPECT_TRUE(FailureText::OfPort(port).startsWith(QStringLiteral("Port 9 is /dev/ttyS8. There are: ")));
    for (int number = 1; number < 12; ++number) {
        port.others << QStringLiteral("/dev/ttyS%1").arg(number);
    }
    EXPECT_TRUE(FailureText::OfPort(port).endsWith(QStringLiteral("/dev/ttyS6 and 5 more.")));
}

TEST_F(FailureTextTest, TheDevicesThatThereAreComeWithTheirMarks) {
    FailureText::Port port{
        .number = 1, .device = QStringLiteral("/dev/%2"), .isThere = true, .others = {QStringLiteral("%1")}};
    EXPECT_EQ(FailureText::OfPort(port), QStringLiteral("Port 1 is /dev/%2. There are: %1."));
}

} // namespace ztv

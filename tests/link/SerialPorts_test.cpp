#include "link/SerialPorts.h"

#include "tests/support/Printers.h"

#include <QTemporaryFile>
#include <gtest/gtest.h>
#include <unistd.h>

TEST(SerialPortsTest, NamesTheDeviceByEnvironmentThenSettingThenNumber) {
    SettingsStore settings(QStringLiteral("ZTV Link ports test"));
    EXPECT_EQ(SerialPorts::DeviceOfPort(settings, 7), QStringLiteral("/dev/ttyS6"));
    settings.Write(QStringLiteral("Ports"), QStringLiteral("7"), QStringLiteral("/dev/stored"));
    EXPECT_EQ(SerialPorts::DeviceOfPort(settings, 7), QStringLiteral("/dev/stored"));
    EXPECT_EQ(SerialPorts::DeviceOfPort(settings, 8), QStringLiteral("/dev/ttyS7"));
    qputenv("ZTVLINK_PORT_7", "/dev/named");
    EXPECT_EQ(SerialPorts::DeviceOfPort(settings, 7), QStringLiteral("/dev/named"));
    qunsetenv("ZTVLINK_PORT_7");
}

TEST(SerialPortsTest, AdvisesOnPermissionsOnlyWhereTheyAreTheCause) {
    EXPECT_EQ(SerialPorts::PermissionAdvice(QStringLiteral("/dev/there-is-no-such-port")), QString());
    EXPECT_EQ(SerialPorts::PermissionAdvice(QStringLiteral("/dev/null")), QString());
}

TEST(SerialPortsTest, NamesTheGroupThatOwnsARefusedDevice) {
    QTemporaryFile device(QStringLiteral("/tmp/ztvlink-port-XXXXXX"));
    ASSERT_TRUE(device.open());
    constexpr gid_t dialout = 20;
    const bool asRoot = geteuid() == 0;
    if (asRoot) {
        ASSERT_EQ(chown(device.fileName().toLocal8Bit().constData(), 0, dialout), 0);
        ASSERT_EQ(seteuid(65534), 0);
    } else {
        device.setPermissions({});
    }
    const QString advice = SerialPorts::PermissionAdvice(device.fileName());
    if (asRoot) {
        ASSERT_EQ(seteuid(0), 0);
        EXPECT_NE(advice.indexOf(QStringLiteral("It belongs to the group \"dialout\"")), -1)
            << advice.toStdString();
        EXPECT_NE(advice.indexOf(QStringLiteral("sudo usermod -a -G dialout $USER")), -1);
    }
    EXPECT_NE(advice.indexOf(QStringLiteral("You have no permission to use ") + device.fileName()), -1);
}

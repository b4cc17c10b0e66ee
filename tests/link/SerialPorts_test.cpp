#include "link/SerialPorts.h"

#include "tests/helpers/Printers.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTemporaryFile>
#include <gtest/gtest.h>
#include <unistd.h>

namespace ztv {

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

TEST(SerialPortsTest, PutsAChosenDeviceBehindANumberUntilItIsTakenBack) {
    SettingsStore settings(QStringLiteral("ZTV Link choice test"));
    SerialPorts::ChooseDevice(settings, 9, QStringLiteral("/dev/chosen"));
    EXPECT_EQ(SerialPorts::DeviceOfPort(settings, 9), QStringLiteral("/dev/chosen"));
    EXPECT_EQ(SerialPorts::ChosenDevice(settings, 9), QStringLiteral("/dev/chosen"));
    EXPECT_TRUE(SerialPorts::DeviceCanBeChosen(9));
    SerialPorts::ChooseDevice(settings, 9, QString());
    EXPECT_EQ(SerialPorts::DeviceOfPort(settings, 9), QStringLiteral("/dev/ttyS8"));
    EXPECT_EQ(SerialPorts::PortOfDevice(QStringLiteral("/dev/ttyS8")), std::nullopt);
}

TEST(SerialPortsTest, OffersDevicesByTheirOwnNamesFirst) {
    const QTemporaryDir folder;
    QFile::link(QStringLiteral("/dev/null"), folder.filePath(QStringLiteral("usb-B-port0")));
    QFile::link(QStringLiteral("/dev/zero"), folder.filePath(QStringLiteral("usb-A-port0")));
    QFile::link(QStringLiteral("/dev/unplugged"), folder.filePath(QStringLiteral("usb-C-port0")));
    const QStringList devices = SerialPorts::AvailableDevices(folder.path());
    ASSERT_GE(devices.size(), 2);
    EXPECT_EQ(devices[0], folder.filePath(QStringLiteral("usb-A-port0")));
    EXPECT_EQ(devices[1], folder.filePath(QStringLiteral("usb-B-port0")));
    EXPECT_FALSE(devices.contains(folder.filePath(QStringLiteral("usb-C-port0"))));
    EXPECT_TRUE(SerialPorts::AvailableDevices(folder.filePath(QStringLiteral("none"))).size() <=
                devices.size());
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

} // namespace ztv

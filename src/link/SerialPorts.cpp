#include "link/SerialPorts.h"

#include "link/SystemPorts.h"

#include <QDir>
#include <QFileInfo>
#include <algorithm>

#ifdef Q_OS_UNIX
#include <QFile>
#include <cerrno>
#include <fcntl.h>
#include <unistd.h>
#endif

namespace ztv {

namespace {

QString Section() {
    return QStringLiteral("Ports");
}

QString DeviceOfEnvironment([[maybe_unused]] std::int16_t number) {
#ifdef Q_OS_WIN
    return {};
#else
    return qEnvironmentVariable(QStringLiteral("ZTVLINK_PORT_%1").arg(number).toLatin1().constData());
#endif
}

} // namespace

namespace SerialPorts {

QString DeviceOfPort([[maybe_unused]] const SettingsStore &settings, std::int16_t number) {
#ifdef Q_OS_WIN
    return QStringLiteral("COM%1").arg(number);
#else
    for (const QString &device : {DeviceOfEnvironment(number), ChosenDevice(settings, number)}) {
        if (!device.isEmpty()) {
            return device;
        }
    }
    return QStringLiteral("/dev/ttyS%1").arg(number - 1);
#endif
}

std::optional<std::int16_t> PortOfDevice([[maybe_unused]] const QString &device) {
#ifdef Q_OS_WIN
    constexpr int highest = 255;
    const int number = QStringView(device).mid(3).toInt();
    if (device.startsWith(QStringLiteral("COM")) && number >= 1 && number <= highest) {
        return static_cast<std::int16_t>(number);
    }
#endif
    return std::nullopt;
}

bool DeviceCanBeChosen(std::int16_t number) {
    return DeviceOfEnvironment(number).isEmpty();
}

void ChooseDevice(SettingsStore &settings, std::int16_t number, const QString &device) {
    const QString key = QString::number(number);
    if (device.isEmpty()) {
        settings.Remove(Section(), key);
    } else {
        settings.Write(Section(), key, device);
    }
}

QString ChosenDevice(const SettingsStore &settings, std::int16_t number) {
    return settings.Read(Section(), QString::number(number), QString());
}

QStringList AvailableDevices(const QString &byIdFolder) {
    QStringList devices;
    QStringList targets;
    for (const QFileInfo &link : QDir(byIdFolder).entryInfoList(QDir::System | QDir::Files, QDir::Name)) {
        if (link.exists()) {
            devices.append(link.absoluteFilePath());
            targets.append(link.canonicalFilePath());
        }
    }
    for (const SystemPort &port : SystemPorts()) {
        if (!targets.contains(port.name)) {
            devices.append(port.name);
        }
    }
    return devices;
}

std::vector<Described> Describe() {
    const std::vector<SystemPort> ports = SystemPorts();
    std::vector<Described> described;
    for (const QString &device : AvailableDevices()) {
        const QString target = QFileInfo(device).canonicalFilePath();
        const auto port = std::ranges::find_if(ports, [&](const SystemPort &candidate) {
            return candidate.name == device || candidate.name == target;
        });
        described.push_back(
            {.name = device, .description = port == ports.end() ? QString() : port->description});
    }
    return described;
}

QStringList DescribedDevices() {
    QStringList texts;
    for (const auto &[name, description] : Describe()) {
        texts.append(description.isEmpty() ? name : QStringLiteral("%1 (%2)").arg(name, description));
    }
    return texts;
}

bool IsThere(const QString &device) {
    return QFileInfo::exists(device) || AvailableDevices().contains(device);
}

QString PermissionAdvice([[maybe_unused]] const QString &device) {
#ifdef Q_OS_UNIX
    const bool refused =
        faccessat(AT_FDCWD, QFile::encodeName(device).constData(), R_OK | W_OK, AT_EACCESS) != 0 &&
        errno == EACCES;
    if (!refused) {
        return {};
    }
    const QString group = QFileInfo(device).group();
    if (group.isEmpty() || group == QStringLiteral("root")) {
        return QStringLiteral("You have no permission to use %1. Ask the machine's administrator for it.")
            .arg(device);
    }
    return QStringLiteral(
               "You have no permission to use %1. It belongs to the group \"%2\". To join the group, run\n\n"
               "    sudo usermod -a -G %2 $USER\n\nand log in again.")
        .arg(device, group);
#else
    return {};
#endif
}

} // namespace SerialPorts

} // namespace ztv

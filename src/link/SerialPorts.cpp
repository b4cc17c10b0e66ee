#include "link/SerialPorts.h"

#ifdef Q_OS_UNIX
#include <QFile>
#include <QFileInfo>
#include <cerrno>
#include <fcntl.h>
#include <unistd.h>
#endif

namespace SerialPorts {

QString DeviceOfPort(const SettingsStore &settings, std::int16_t number) {
#ifdef Q_OS_WIN
    Q_UNUSED(settings)
    return QStringLiteral("COM%1").arg(number);
#else
    QString fromEnvironment =
        qEnvironmentVariable(QStringLiteral("ZTVLINK_PORT_%1").arg(number).toLatin1().constData());
    if (!fromEnvironment.isEmpty()) {
        return fromEnvironment;
    }
    return settings.Read(QStringLiteral("Ports"), QString::number(number),
                         QStringLiteral("/dev/ttyS%1").arg(number - 1));
#endif
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

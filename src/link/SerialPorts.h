#pragma once

#include "support/SettingsStore.h"

#include <QString>
#include <QStringList>
#include <cstdint>
#include <optional>

// The serial devices of the machine behind the port numbers 1 to 255.
namespace SerialPorts {

// COMn on Windows. Elsewhere the first that there is of: the environment variable ZTVLINK_PORT_n, the
// setting "Ports"/n, /dev/ttyS(n-1).
QString DeviceOfPort(const SettingsStore &settings, std::int16_t number);

// The number of a device that has one of its own, as COMn has.
std::optional<std::int16_t> PortOfDevice(const QString &device);

// False where the environment says which device the port is.
bool DeviceCanBeChosen(std::int16_t number);

// Puts a device behind a port number from now on; an empty one takes the choice back.
void ChooseDevice(SettingsStore &settings, std::int16_t number, const QString &device);

// The setting that ChooseDevice leaves; empty where no choice was made.
QString ChosenDevice(const SettingsStore &settings, std::int16_t number);

// The serial devices that are there: first those that have a name of their own whatever socket they are
// plugged into, below `byIdFolder`, then the others.
QStringList AvailableDevices(const QString &byIdFolder = QStringLiteral("/dev/serial/by-id"));

bool IsThere(const QString &device);

// Advice about a device that this user may not open; empty when permission isn't the cause.
QString PermissionAdvice(const QString &device);

} // namespace SerialPorts

#pragma once

#include "support/SettingsStore.h"

#include <QString>
#include <QStringList>
#include <cstdint>
#include <optional>
#include <vector>

namespace ztv {

// Maps the port numbers 1 to 255 to the machine's serial devices.
namespace SerialPorts {

// Returns COMn on Windows. Elsewhere returns the first that is set of the environment variable ZTVLINK_PORT_n
// and the setting "Ports"/n, otherwise /dev/ttyS(n-1).
QString DeviceOfPort(const SettingsStore &settings, std::int16_t number);

// Returns the port number that a device's name contains, as in COMn.
std::optional<std::int16_t> PortOfDevice(const QString &device);

// Returns false where the environment sets the port's device.
bool DeviceCanBeChosen(std::int16_t number);

// Assigns a device to a port number; an empty one removes the assignment.
void ChooseDevice(SettingsStore &settings, std::int16_t number, const QString &device);

// Returns the device that ChooseDevice assigned; empty where there is none.
QString ChosenDevice(const SettingsStore &settings, std::int16_t number);

// Lists the connected serial devices: first those below `byIdFolder`, whose names don't depend on the socket
// that they are plugged into, then the others.
QStringList AvailableDevices(const QString &byIdFolder = QStringLiteral("/dev/serial/by-id"));

struct Described {
    QString name;
    QString description; // as the machine knows the device; may be empty
};

// Lists the same devices with what the machine knows of each.
std::vector<Described> Describe();

// The same in words, as in "/dev/ttyUSB0 (FT232R USB UART)".
QStringList DescribedDevices();

bool IsThere(const QString &device);

// Returns advice about a device that this user may not open; empty when permission isn't the cause.
QString PermissionAdvice(const QString &device);

} // namespace SerialPorts

} // namespace ztv

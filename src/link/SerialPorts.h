#pragma once

#include "support/SettingsStore.h"

#include <QString>
#include <cstdint>

// The serial devices of the machine behind the port numbers 1 to 255.
namespace SerialPorts {

// COMn on Windows. Elsewhere the first that there is of: the environment variable ZTVLINK_PORT_n, the
// setting "Ports"/n, /dev/ttyS(n-1).
QString DeviceOfPort(const SettingsStore &settings, std::int16_t number);

// What to do about a device that this user may not open; empty when permission isn't the cause.
QString PermissionAdvice(const QString &device);

} // namespace SerialPorts

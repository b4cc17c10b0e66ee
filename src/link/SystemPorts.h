#pragma once

#include <QString>
#include <vector>

namespace ztv {

struct SystemPort {
    QString name;        // what to open
    QString description; // as the system knows the device; may be empty
};

// Lists the serial devices that the system has. The build selects the implementation.
std::vector<SystemPort> SystemPorts();

} // namespace ztv

#include "link/SystemPorts.h"

#include <QSerialPortInfo>

namespace ztv {

std::vector<SystemPort> SystemPorts() {
    std::vector<SystemPort> ports;
    for (const QSerialPortInfo &port : QSerialPortInfo::availablePorts()) {
        ports.push_back({.name = port.systemLocation(), .description = port.description()});
    }
    return ports;
}

} // namespace ztv

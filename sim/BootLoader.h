#pragma once

#include <QByteArray>

namespace sim {

struct BootAnswer {
    QByteArray bytes;
    bool startApplication = false; // after the bytes are out
};

// What owns the line while the sensor is in boot mode.
class BootLoader {
public:
    virtual ~BootLoader() = default;
    virtual void Enter() = 0;
    virtual BootAnswer Receive(const QByteArray &bytes) = 0;
};

} // namespace sim

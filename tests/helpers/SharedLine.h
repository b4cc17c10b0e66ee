#pragma once

#include "sim/SimulatedSensor.h"

#include <QByteArray>
#include <QSocketNotifier>
#include <QString>
#include <memory>
#include <vector>

namespace ztv {

// A line with several sensors. Each sensor has a pseudo terminal of its own, and the host another; this
// forwards between them. Bytes of the host reach all sensors, at the host's line settings; bytes of a sensor
// reach the host.
class SharedLine {
public:
    SharedLine();
    ~SharedLine();
    SharedLine(const SharedLine &) = delete;
    SharedLine &operator=(const SharedLine &) = delete;

    // The device to open.
    QString Path() const { return path_; }

    // REQUIRES: the sensor is started and outlives the line.
    void Join(const sim::SimulatedSensor &sensor);

private:
    struct Branch {
        int descriptor;
        std::unique_ptr<QSocketNotifier> notifier;
    };

    void FromHost();
    void FromSensor(int descriptor);

    int master_ = -1;
    int slave_ = -1; // keeps the terminal alive while the host has it closed
    QString path_;
    std::unique_ptr<QSocketNotifier> notifier_;
    std::vector<Branch> branches_;
};

} // namespace ztv

#pragma once

#include "sim/SimulatedSensor.h"

#include <QByteArray>
#include <QSocketNotifier>
#include <QString>
#include <memory>
#include <vector>

namespace ztv {

// One line with several sensors on it. Each sensor has a pseudo terminal of its own; this joins them with one
// for the host. What the host sends reaches them all, at the line settings that the host has made, and what
// any of them sends reaches the host.
class SharedLine {
public:
    SharedLine();
    ~SharedLine();
    SharedLine(const SharedLine &) = delete;
    SharedLine &operator=(const SharedLine &) = delete;

    // The device to open.
    QString Path() const { return path_; }

    // The sensor has been started, and outlives the line.
    void Join(const sim::SimulatedSensor &sensor);

private:
    struct Branch {
        int descriptor;
        std::unique_ptr<QSocketNotifier> notifier;
    };

    void FromHost();
    void FromSensor(int descriptor);

    int master_ = -1;
    int slave_ = -1; // keeps the terminal while the host doesn't have it open
    QString path_;
    std::unique_ptr<QSocketNotifier> notifier_;
    std::vector<Branch> branches_;
};

} // namespace ztv

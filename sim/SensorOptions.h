#pragma once

#include "sim/LineFaults.h"

#include <QString>
#include <QtGlobal>

#include <optional>

namespace sim {

// All options of a sensor before it starts. Options that aren't set come from the presets.
struct SensorOptions {
    QString presets;   // the presets database
    QString link;      // symbolic link to the pseudo terminal; none when empty
    QString log;       // file for the frame log, "-" for standard error; none when empty
    QString flash;     // file that keeps the program flash between runs; none when empty
    bool boot = false; // starts in the boot loader
    std::optional<int> address;
    std::optional<int> baud;   // index, 0 to 4
    std::optional<int> parity; // index, 0 to 3
    std::optional<int> addressing;
    LineFaults faults;
    quint32 seed = 1;
};

} // namespace sim

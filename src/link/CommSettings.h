#pragma once

#include <cstdint>

namespace ztv {

// The line as the user chooses it, and the sensor on it. A fresh installation has the default values.
struct CommSettings {
    std::int16_t port = 1;
    std::int16_t baud = 4;       // an index of BaudTable
    std::int16_t parityStop = 1; // an index of ParityStopTable
    std::int16_t address = 1;    // of the slave

    bool operator==(const CommSettings &) const = default;
};

} // namespace ztv

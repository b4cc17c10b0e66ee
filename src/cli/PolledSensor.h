#pragma once

#include "cli/SensorLine.h"
#include "link/LinkStatus.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <vector>

namespace ztv {

// The replies of one or more sensors, counted.
struct ReplyCounts {
    std::int64_t requests = 0;
    std::int64_t good = 0;
    std::int64_t lost = 0;    // with those that were damaged
    std::int64_t damaged = 0; // of those lost
    std::int64_t refused = 0; // whole replies, in which the sensor rejects the request

    void Count(LinkStatus status);
    ReplyCounts &operator+=(const ReplyCounts &other);
};

// One sensor that is read again and again, each time once. A reply that doesn't come leaves a gap.
class PolledSensor {
public:
    struct Reading {
        std::chrono::system_clock::time_point time; // of the last good reply; without one, of the end
        SensorLine::Values values;                  // by tag, without those that didn't come
    };

    PolledSensor(std::int16_t address, std::vector<std::int16_t> tags);

    // Makes the next Read ask first how the sensor numbers its registers, as it does by itself after a lost
    // reply: by then another sensor may answer.
    void ForgetAddressingMode() { addressingMode_.reset(); }

    Reading Read(SensorLine &line);

    std::int16_t Address() const { return address_; }
    const ReplyCounts &Counts() const { return counts_; }
    LinkStatus LastFailure() const { return lastFailure_; }

    // True if the last Read failed without a request, since the line's device is gone.
    bool DeviceIsGone() const { return deviceIsGone_; }

private:
    void Take(LinkStatus status);

    std::int16_t address_;
    std::vector<std::int16_t> tags_;
    std::optional<int> addressingMode_;
    ReplyCounts counts_;
    LinkStatus lastFailure_ = LinkStatus::Timeout;
    bool deviceIsGone_ = false;
};

} // namespace ztv

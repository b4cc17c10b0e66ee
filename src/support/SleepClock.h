#pragma once

#include <chrono>

namespace ztv {

// A steady clock that also counts the time during which the computer sleeps.
struct SleepClock {
    using duration = std::chrono::nanoseconds;
    using rep = duration::rep;
    using period = duration::period;
    using time_point = std::chrono::time_point<SleepClock>;
    static constexpr bool is_steady = true;

    static time_point now();
};

} // namespace ztv

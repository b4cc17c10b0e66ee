#include "support/SleepClock.h"

#ifdef __linux__
#include <ctime>
#endif

namespace ztv {

SleepClock::time_point SleepClock::now() {
#ifdef __linux__
    std::timespec now{};
    clock_gettime(CLOCK_BOOTTIME, &now);
    return time_point(std::chrono::seconds(now.tv_sec) + std::chrono::nanoseconds(now.tv_nsec));
#else
    // Elsewhere the steady clock counts the sleep.
    return time_point(
        std::chrono::duration_cast<duration>(std::chrono::steady_clock::now().time_since_epoch()));
#endif
}

} // namespace ztv

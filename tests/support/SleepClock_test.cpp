#include "support/SleepClock.h"

#include <gtest/gtest.h>

namespace ztv {

TEST(SleepClockTest, AdvancesWithTheSteadyClockWhileAwake) {
    using Steady = std::chrono::steady_clock;
    const auto before = Steady::now();
    const auto start = SleepClock::now();
    while (SleepClock::now() - start < std::chrono::milliseconds(20)) {
    }
    EXPECT_GE(Steady::now() - before, std::chrono::milliseconds(20));
}

TEST(SleepClockTest, IsNeverBehindAClockThatStopsInSleep) {
    const auto awake = std::chrono::steady_clock::now().time_since_epoch();
    EXPECT_GE(SleepClock::now().time_since_epoch(), awake);
}

} // namespace ztv

#include "sim/PreciseTimer.h"

#include "tests/helpers/Wait.h"

#include <gtest/gtest.h>

namespace sim {

using ztv::WaitUntil;
namespace {

class SimPreciseTimer : public testing::Test {
protected:
    int calls_ = 0;
    qint64 called_ = 0;
    PreciseTimer timer_{[this] {
        ++calls_;
        called_ = PreciseTimer::Now();
    }};
};

TEST_F(SimPreciseTimer, CallsOnceAndNeverTooEarly) {
    for (const qint64 ns : {100'000, 1'300'000, 5'700'000}) {
        calls_ = 0;
        const qint64 due = PreciseTimer::Now() + ns;
        timer_.StartAt(due);
        ASSERT_TRUE(WaitUntil([this] { return calls_ > 0; }));
        EXPECT_GE(called_, due);
        EXPECT_FALSE(WaitUntil([this] { return calls_ > 1; }, 20));
    }
}

TEST_F(SimPreciseTimer, CallsForATimeThatHasPassed) {
    timer_.StartAt(0);
    EXPECT_TRUE(WaitUntil([this] { return calls_ == 1; }));
    timer_.StartAt(PreciseTimer::Now() - 1'000'000);
    EXPECT_TRUE(WaitUntil([this] { return calls_ == 2; }));
}

TEST_F(SimPreciseTimer, CanBeStopped) {
    timer_.StartAt(PreciseTimer::Now());
    timer_.Stop();
    EXPECT_FALSE(WaitUntil([this] { return calls_ > 0; }, 20));
}

TEST_F(SimPreciseTimer, KeepsTheLastStart) {
    timer_.StartAt(PreciseTimer::Now());
    const qint64 due = PreciseTimer::Now() + 10'000'000;
    timer_.StartAt(due);
    ASSERT_TRUE(WaitUntil([this] { return calls_ > 0; }));
    EXPECT_GE(called_, due);
    EXPECT_EQ(calls_, 1);
}

} // namespace
} // namespace sim

#include "link/RunSchedule.h"

#include <gtest/gtest.h>
#include <vector>

namespace ztv {

namespace {

constexpr qint64 ms = 1000;

class RunScheduleTest : public testing::Test {
protected:
    // Begins and ends the run that is due at that time and returns its transaction; -1: none is due.
    int RunNext(qint64 now) {
        const RunSchedule::Next next = schedule_.AskNext(now);
        if (!next.number) {
            return -1;
        }
        schedule_.Begin(next, now);
        schedule_.End();
        return *next.number;
    }

    std::vector<int> RunAllAt(qint64 now, int most) {
        std::vector<int> order;
        for (int number = RunNext(now); number >= 0 && static_cast<int>(order.size()) < most;
             number = RunNext(now)) {
            order.push_back(number);
        }
        return order;
    }

    void StartCycle(int number, qint64 period, qint64 now) {
        schedule_.PeriodUs(number, period);
        schedule_.StartCycle(number, now);
    }

    RunSchedule schedule_;
};

TEST_F(RunScheduleTest, NothingRunsAndNothingIsToBeAskedForAtFirst) {
    const RunSchedule::Next next = schedule_.AskNext(0);
    EXPECT_FALSE(next.number);
    EXPECT_FALSE(next.askAgainUs);
    EXPECT_FALSE(schedule_.IsBusy(0));
}

TEST_F(RunScheduleTest, RunsThatWereQueuedOnceGoFirstInFirstOut) {
    schedule_.QueueOnce(3);
    schedule_.QueueOnce(0);
    schedule_.QueueOnce(4);
    EXPECT_EQ(RunAllAt(0, 10), (std::vector{3, 0, 4}));
}

TEST_F(RunScheduleTest, WhatWaitsForItsOneRunIsNotQueuedAgain) {
    schedule_.QueueOnce(2);
    schedule_.QueueOnce(1);
    schedule_.QueueOnce(2);
    EXPECT_EQ(RunAllAt(0, 10), (std::vector{2, 1}));
}

TEST_F(RunScheduleTest, WhatIsQueuedWhileItRunsRunsOnceMoreAndStaysBusy) {
    schedule_.QueueOnce(2);
    schedule_.Begin(schedule_.AskNext(0), 0);
    schedule_.QueueOnce(2);
    schedule_.End();
    EXPECT_TRUE(schedule_.IsBusy(2));
    EXPECT_EQ(RunNext(0), 2);
    EXPECT_FALSE(schedule_.IsBusy(2));
    EXPECT_EQ(RunNext(0), -1);
}

TEST_F(RunScheduleTest, IsBusyFromTheQueueingUntilTheEndOfTheRun) {
    schedule_.QueueOnce(1);
    EXPECT_TRUE(schedule_.IsBusy(1));
    schedule_.Begin(schedule_.AskNext(0), 0);
    EXPECT_TRUE(schedule_.IsBusy(1));
    schedule_.End();
    EXPECT_FALSE(schedule_.IsBusy(1));
}

TEST_F(RunScheduleTest, ACycleKeepsItsPeriodFromStartToStart) {
    StartCycle(1, 200 * ms, 5 * ms);
    EXPECT_EQ(RunNext(5 * ms), 1);
    EXPECT_EQ(schedule_.AskNext(150 * ms).askAgainUs, 205 * ms);
    EXPECT_EQ(RunNext(205 * ms - 1), -1);
    EXPECT_EQ(RunNext(230 * ms), 1); // late
    EXPECT_EQ(schedule_.AskNext(230 * ms).askAgainUs, 405 * ms);
}

TEST_F(RunScheduleTest, ARoundThatIsLateByAPeriodMovesTheCycleInPlaceOfFollowingTheNextClosely) {
    StartCycle(1, 200 * ms, 0);
    EXPECT_EQ(RunNext(0), 1);
    EXPECT_EQ(RunNext(400 * ms), 1);
    EXPECT_EQ(RunNext(401 * ms), -1);
    EXPECT_EQ(schedule_.AskNext(401 * ms).askAgainUs, 600 * ms);
}

TEST_F(RunScheduleTest, TheCycleThatIsDueFirstGoesFirst) {
    StartCycle(1, 100 * ms, 10 * ms);
    StartCycle(3, 100 * ms, 5 * ms);
    EXPECT_EQ(schedule_.AskNext(0).askAgainUs, 5 * ms);
    EXPECT_EQ(RunAllAt(20 * ms, 10), (std::vector{3, 1}));
}

TEST_F(RunScheduleTest, ACycleAndTheQueueTakeTurnsWhereBothWait) {
    StartCycle(1, 0, 0); // due again at once
    for (const int number : {0, 2, 3}) {
        schedule_.QueueOnce(number);
    }
    EXPECT_EQ(RunAllAt(0, 8), (std::vector{0, 1, 2, 1, 3, 1, 1, 1}));
}

TEST_F(RunScheduleTest, AStoppedCycleRunsNoMore) {
    StartCycle(1, 100 * ms, 0);
    schedule_.StopCycle(1);
    EXPECT_FALSE(schedule_.IsBusy(1));
    EXPECT_EQ(RunNext(1000 * ms), -1);
}

TEST_F(RunScheduleTest, WhatIsWithdrawnRunsNoMore) {
    StartCycle(1, 100 * ms, 0);
    schedule_.QueueOnce(1);
    schedule_.QueueOnce(2);
    schedule_.Withdraw(1);
    EXPECT_FALSE(schedule_.IsBusy(1));
    EXPECT_EQ(RunAllAt(1000 * ms, 10), (std::vector{2}));
}

TEST_F(RunScheduleTest, WhatIsWithdrawnWhileItRunsIsBusyUntilItsEnd) {
    schedule_.QueueOnce(1);
    schedule_.Begin(schedule_.AskNext(0), 0);
    schedule_.Withdraw(1);
    EXPECT_TRUE(schedule_.IsBusy(1));
    schedule_.End();
    EXPECT_FALSE(schedule_.IsBusy(1));
}

TEST_F(RunScheduleTest, ClearingEndsAllOfIt) {
    StartCycle(1, 100 * ms, 0);
    schedule_.QueueOnce(2);
    schedule_.Begin(schedule_.AskNext(0), 0);
    schedule_.Clear();
    for (int number = 0; number < RunSchedule::Count; ++number) {
        EXPECT_FALSE(schedule_.IsBusy(number)) << number;
    }
    EXPECT_EQ(RunNext(1000 * ms), -1);
}

} // namespace

} // namespace ztv

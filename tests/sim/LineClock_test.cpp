#include "sim/LineClock.h"

#include <gtest/gtest.h>

#include <utility>

namespace sim {
namespace {

TEST(SimLineClock, PutsTheRequestBeforeTheReply) {
    LineClock clock;
    EXPECT_EQ(clock.Reserve(1000, 60, 140), 1060);
}

TEST(SimLineClock, LetsNoReplyBeginTooEarly) {
    LineClock clock;
    EXPECT_EQ(clock.Reserve(1000, 60, 140, 1100), 1100);
    EXPECT_EQ(clock.Reserve(1010, 60, 140, 1100), 1300);
}

TEST(SimLineClock, QueuesWhatComesWhileTheLineIsBusy) {
    LineClock clock;
    clock.Reserve(1000, 60, 140);
    EXPECT_EQ(clock.Reserve(1010, 60, 140), 1260);
    EXPECT_EQ(clock.Reserve(1400, 60, 0), 1460);
    EXPECT_EQ(clock.Reserve(5000, 60, 0), 5060);
}

// The host answers each reply at once, and each is sent late.
TEST(SimLineClock, AddsNoDelayUpOverThousandsOfExchanges) {
    LineClock clock;
    constexpr qint64 request = 1'562'500;
    constexpr qint64 reply = 2'083'333;
    qint64 now = 1'000'000;
    qint64 end = 0;
    constexpr int exchanges = 5000;
    const qint64 start = now;
    for (int i = 0; i < exchanges; ++i) {
        end = clock.Reserve(now, request, reply) + reply;
        now = end + 300'000 + i % 7 * 100'000;
        clock.GivenOut(now);
    }
    EXPECT_EQ(end, start + exchanges * (request + reply));
}

TEST(SimLineClock, CountsTheTimeOfTheHostButNotOfTheTerminal) {
    for (const auto &[turnaround, counted] : {std::pair(20'000, 0), std::pair(100'000, 0),
                                              std::pair(170'000, 70'000), std::pair(9'000'000, 8'900'000)}) {
        LineClock clock;
        const qint64 end = clock.Reserve(1000, 60, 140) + 140;
        const qint64 given = end + 50;
        clock.GivenOut(given);
        EXPECT_EQ(clock.Reserve(given + turnaround, 60, 140), end + counted + 60) << turnaround;
    }
}

TEST(SimLineClock, ForgivesAHostNothingThatWaitedForNoReply) {
    LineClock clock;
    EXPECT_EQ(clock.Reserve(1000, 60, 140), 1060);
    clock.GivenOut(1300);
    EXPECT_EQ(clock.Reserve(30'000'000, 60, 140), 30'000'060);
}

TEST(SimLineClock, ForgivesLatenessOnce) {
    LineClock clock;
    const qint64 end = clock.Reserve(1000, 60, 140) + 140;
    clock.GivenOut(end + 500'000);
    EXPECT_EQ(clock.Reserve(end + 700'000, 60, 0), end + 100'060);
    EXPECT_EQ(clock.Reserve(end + 800'000, 60, 0), end + 800'060);
}

TEST(SimLineClock, DoesNotRaceToCatchUpAfterALongStop) {
    LineClock clock;
    const qint64 end = clock.Reserve(0, 0, 0);
    constexpr qint64 stop = 5'000'000'000;
    clock.GivenOut(end + stop);
    EXPECT_EQ(clock.Reserve(end + stop, 0, 0), end + stop - 20'000'000);
}

TEST(SimLineClock, ForgetsWhatWasCleared) {
    LineClock clock;
    clock.Reserve(1000, 5000, 5000);
    clock.GivenOut(12000);
    clock.Clear();
    EXPECT_EQ(clock.Reserve(2000, 60, 0), 2060);
}

} // namespace
} // namespace sim

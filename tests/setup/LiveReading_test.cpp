#include "setup/LiveReading.h"

#include <gtest/gtest.h>

namespace ztv {

using namespace std::chrono_literals;
using Condition = LiveReading::Condition;
using Tone = LiveReading::Tone;

class LiveReadingTest : public testing::Test {
protected:
    LiveReadingTest() { reading_.Become(ValueState::Live); }

    void Poll(int raw, std::chrono::milliseconds after = 200ms, bool hasEcho = true) {
        now_ += after;
        reading_.Take({.raw = raw, .hasEcho = hasEcho, .time = now_});
    }
    void PollFor(std::chrono::milliseconds time, int raw) {
        for (const auto end = now_ + time; now_ < end;) {
            Poll(raw);
        }
    }
    Condition Now() const { return reading_.Judge(now_); }
    QString Words() const { return reading_.Words(now_); }

    LiveReading reading_;
    LiveReading::Clock::time_point now_;
};

TEST_F(LiveReadingTest, IsSteadyOnceTheDistanceHasRestedForASecond) {
    EXPECT_EQ(Now(), Condition::Measuring);
    for (int poll = 0; poll < 5; ++poll) {
        Poll(12000);
        EXPECT_EQ(Words(), QStringLiteral("measuring")) << poll;
    }
    Poll(12000);
    EXPECT_EQ(Now(), Condition::Steady);
    EXPECT_EQ(Words(), QStringLiteral("steady"));
}

TEST_F(LiveReadingTest, TwoPollsOfTheSlowestLineAreEnough) {
    Poll(12000, 1500ms);
    EXPECT_EQ(Now(), Condition::Measuring);
    for (int poll = 0; poll < 4; ++poll) {
        Poll(12000, 1500ms);
        EXPECT_EQ(Now(), Condition::Steady) << poll;
    }
}

TEST_F(LiveReadingTest, TheScatterOfATargetAtRestIsSteady) {
    for (int poll = 0; poll < 20; ++poll) {
        Poll(12000 + (poll % 3) * 10);
    }
    EXPECT_EQ(Now(), Condition::Steady);
    EXPECT_EQ(reading_.Spread(), 20);
    Poll(12021);
    EXPECT_EQ(Now(), Condition::Moving);
}

TEST_F(LiveReadingTest, SaysByHowMuchTheDistanceMoves) {
    Poll(12000);
    Poll(12160);
    EXPECT_EQ(Words(), QString::fromUtf8("moving ±0.8\""));
    Poll(0);
    Poll(42000);
    EXPECT_EQ(Words(), QString::fromUtf8("moving ±210.0\""));
}

TEST_F(LiveReadingTest, ForgetsAMovementAfterTwoSeconds) {
    Poll(11000);
    PollFor(2s, 12000);
    EXPECT_EQ(Now(), Condition::Moving);
    Poll(12000);
    EXPECT_EQ(Now(), Condition::Steady);
}

TEST_F(LiveReadingTest, WithoutAnEchoTheDistanceIsAnOldOne) {
    PollFor(2s, 12000);
    Poll(12000, 200ms, false);
    EXPECT_EQ(Words(), QStringLiteral("no echo"));
    EXPECT_EQ(reading_.Spread(), 0);
    Poll(20000); // steadiness counts from the echo's return
    EXPECT_EQ(Now(), Condition::Measuring);
    PollFor(1s, 20000);
    EXPECT_EQ(Now(), Condition::Steady);
}

TEST_F(LiveReadingTest, WithoutALiveTableTheDistanceIsAnOldOne) {
    const struct {
        ValueState state;
        Condition condition;
        const char *words;
    } rows[] = {{ValueState::Stale, Condition::NoAnswer, "no answer"},
                {ValueState::NeverRead, Condition::NoAnswer, "no answer"},
                {ValueState::Held, Condition::NotRead, "not read"}};
    for (const auto &row : rows) {
        PollFor(2s, 12000);
        Poll(12000, 200ms, false);
        reading_.Become(row.state);
        EXPECT_EQ(Now(), row.condition);
        EXPECT_EQ(Words(), QString::fromLatin1(row.words));
        reading_.Become(ValueState::Live);
        EXPECT_EQ(Now(), Condition::Measuring);
    }
}

TEST_F(LiveReadingTest, IsNoAnswerBeforeAnythingWasRead) {
    EXPECT_EQ(LiveReading().Judge(now_), Condition::NoAnswer);
}

TEST_F(LiveReadingTest, ADistanceOfMoreThanTwoSecondsAgoIsNoPresentOne) {
    PollFor(2s, 12000);
    EXPECT_EQ(reading_.Judge(now_ + 2s), Condition::Steady);
    EXPECT_EQ(reading_.Judge(now_ + 2001ms), Condition::NoAnswer);
    EXPECT_FALSE(reading_.Answers(now_ + 2001ms));
    Poll(12000, 2001ms);
    EXPECT_EQ(Now(), Condition::Measuring);
}

TEST_F(LiveReadingTest, KeepsABoundedNumberOfSamples) {
    Poll(0);
    for (std::size_t poll = 0; poll < LiveReading::MostSamples; ++poll) {
        Poll(12000, 1ms);
    }
    EXPECT_EQ(reading_.Spread(), 0); // the first one was dropped
}

TEST_F(LiveReadingTest, ItsToneSaysWhetherTheDistanceCanBeRecorded) {
    EXPECT_EQ(LiveReading::ToneOf(Condition::Steady), Tone::Good);
    EXPECT_EQ(LiveReading::ToneOf(Condition::Moving), Tone::Caution);
    EXPECT_EQ(LiveReading::ToneOf(Condition::Measuring), Tone::Caution);
    for (const Condition bad : {Condition::NoAnswer, Condition::NotRead, Condition::NoEcho}) {
        EXPECT_EQ(LiveReading::ToneOf(bad), Tone::Bad);
    }
}

} // namespace ztv

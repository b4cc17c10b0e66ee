#include "link/LateReplies.h"

#include "tests/helpers/Frames.h"

#include <gtest/gtest.h>

namespace ztv {

namespace {

constexpr qint64 ms = 1000;
constexpr qint64 timeout = 100 * ms;
constexpr qint64 usual = 10 * ms;

ModbusFrame::Request Read(std::uint8_t slave, std::uint16_t start, std::uint16_t quantity) {
    return {.slave = slave,
            .function = ModbusFrame::ReadHoldingRegisters,
            .address = start,
            .quantity = quantity,
            .words = {}};
}

const ModbusFrame::Request poll = Read(1, 0, 2);
const ModbusFrame::Request write = {
    .slave = 1, .function = ModbusFrame::WriteSingleRegister, .address = 5, .quantity = 1, .words = {7}};
const QByteArray reply = WithCrc("01 03 04 12 34 FF FE");

class LateRepliesTest : public testing::Test {
protected:
    void KnowThePace() { late_.Answered(poll, usual); }
    void TimeOut(const ModbusFrame::Request &request, qint64 now) {
        late_.NotAnswered(request, now, timeout);
    }

    // A run of the poll, begun at `start`, that gets no reply; or one that gets a reply with that delay and
    // sets it aside.
    void SilentRun(qint64 start) {
        late_.RunBegins(poll, start, late_.WantsMovedRound());
        TimeOut(poll, start + timeout);
    }
    void DoubtfulRun(qint64 start, qint64 delay) {
        late_.RunBegins(poll, start, late_.WantsMovedRound());
        late_.SetAside(poll, delay);
        TimeOut(poll, start + timeout);
    }
    // Whether a lone reply with that delay counts as the own one of a run begun at `start`.
    bool IsOwn(qint64 start, qint64 delay) {
        late_.RunBegins(poll, start, late_.WantsMovedRound());
        return late_.IsLikelyOwn(delay, 0);
    }

    LateReplies late_;
};

TEST_F(LateRepliesTest, NothingIsOwedWhereNothingTimedOut) {
    KnowThePace();
    EXPECT_FALSE(late_.IsOwed(poll));
    EXPECT_EQ(late_.QuietUntilUs(poll), 0);
}

TEST_F(LateRepliesTest, AReadThatTimedOutIsOwedAReplyUntilAnAnswerComes) {
    TimeOut(poll, 0);
    EXPECT_TRUE(late_.IsOwed(poll));
    late_.Answered(poll, usual);
    EXPECT_FALSE(late_.IsOwed(poll));
}

TEST_F(LateRepliesTest, ALateReplyLooksLikeThatToAnyReadOfThatSlaveAndQuantity) {
    TimeOut(poll, 0);
    EXPECT_TRUE(late_.IsOwed(Read(1, 40, 2))) << "the reply doesn't name where it starts";
    EXPECT_FALSE(late_.IsOwed(Read(2, 0, 2)));
    EXPECT_FALSE(late_.IsOwed(Read(1, 0, 3)));
    EXPECT_FALSE(late_.IsOwed(write));
}

TEST_F(LateRepliesTest, AWriteIsOwedNothingSinceItsEchoNamesIt) {
    TimeOut(write, 0);
    EXPECT_FALSE(late_.IsOwed(write));
    EXPECT_EQ(late_.QuietUntilUs(write), 0);
}

TEST_F(LateRepliesTest, AOneShotWaitsATimeoutLonger) {
    KnowThePace();
    TimeOut(poll, 1000 * ms);
    EXPECT_EQ(late_.QuietUntilUs(poll), 1100 * ms);
    EXPECT_EQ(late_.QuietUntilUs(Read(2, 0, 2)), 0) << "a late reply can't be taken for its own";
}

TEST_F(LateRepliesTest, AOneShotAfterADoubtfulRunWaitsUntilNothingCanBeOwed) {
    KnowThePace();
    SilentRun(0);
    DoubtfulRun(200 * ms, 60 * ms);
    EXPECT_EQ(late_.QuietUntilUs(poll), 300 * ms + timeout + 4 * timeout);
    late_.FailedOtherwise();
    EXPECT_EQ(late_.QuietUntilUs(poll), 300 * ms + timeout);
}

TEST_F(LateRepliesTest, AReplyWithinFortyMillisecondsOfTheUsualDelayIsLikelyItsOwn) {
    KnowThePace();
    SilentRun(0);
    late_.RunBegins(poll, 200 * ms);
    EXPECT_TRUE(late_.IsLikelyOwn(usual + 40 * ms, 0));
    EXPECT_FALSE(late_.IsLikelyOwn(usual + 40 * ms + 1, 0));
    EXPECT_TRUE(late_.IsLikelyOwn(usual + 40 * ms + 1, 1)) << "the line adds as much";
    EXPECT_FALSE(late_.IsLikelyOwn(std::nullopt, 0)) << "its delay isn't known";
}

TEST_F(LateRepliesTest, BeforeThePaceIsKnownAReplyIsLikelyItsOwnWhereItIsPromptOrALateOneIsNotLikely) {
    SilentRun(0); // its reply is likely for 200 ms
    late_.RunBegins(poll, 120 * ms);
    EXPECT_TRUE(late_.IsLikelyOwn(40 * ms, 0));
    EXPECT_FALSE(late_.IsLikelyOwn(40 * ms + 1, 0));
    EXPECT_FALSE(late_.IsLikelyOwn(80 * ms, 0));
    EXPECT_TRUE(late_.IsLikelyOwn(80 * ms + 1, 0)) << "the late one would be later than is likely";
}

TEST_F(LateRepliesTest, AReplyWhoseDelayIsNotKnownTellsNothingOfThePace) {
    KnowThePace();
    late_.Answered(poll, std::nullopt);
    SilentRun(0);
    EXPECT_TRUE(IsOwn(200 * ms, usual + 40 * ms));
    EXPECT_FALSE(late_.IsLikelyOwn(usual + 40 * ms + 1, 0));
}

TEST_F(LateRepliesTest, TheUsualDelayFollowsASlowReplyAtOnceAndAQuickOneByAndBy) {
    late_.Answered(poll, 80 * ms);
    late_.Answered(poll, 8 * ms); // 70 ms by now
    SilentRun(0);
    EXPECT_TRUE(IsOwn(200 * ms, 110 * ms));
    EXPECT_FALSE(late_.IsLikelyOwn(111 * ms, 0));
}

TEST_F(LateRepliesTest, OneSetAsideIsOneOwedLess) {
    KnowThePace();
    SilentRun(0);
    SilentRun(200 * ms);
    late_.RunBegins(poll, 400 * ms);
    late_.SetAside(poll, usual);
    EXPECT_TRUE(late_.HasSetAside());
    EXPECT_TRUE(late_.IsOwed(poll));
    late_.SetAside(poll, usual);
    EXPECT_FALSE(late_.IsOwed(poll));
    late_.RunBegins(poll, 500 * ms);
    EXPECT_FALSE(late_.HasSetAside());
}

// A doubtful reply came 60 ms after its own run, 260 ms after the run before. ----------------------

TEST_F(LateRepliesTest, TheRoundAfterADoubtfulOneIsMovedUnlessItsIntervalDiffersByItself) {
    KnowThePace();
    SilentRun(0);
    EXPECT_FALSE(late_.WantsMovedRound());
    DoubtfulRun(200 * ms, 60 * ms);
    EXPECT_TRUE(late_.WantsMovedRound());
    DoubtfulRun(360 * ms, 95 * ms);
    EXPECT_FALSE(late_.WantsMovedRound());
    DoubtfulRun(600 * ms, 60 * ms);
    EXPECT_FALSE(late_.WantsMovedRound()) << "240 ms, then 200 ms";
    DoubtfulRun(800 * ms, 60 * ms);
    EXPECT_TRUE(late_.WantsMovedRound());
}

TEST_F(LateRepliesTest, ADelayThatRepeatsItselfThoughTheRoundWasMovedIsASensorThatHasBecomeSlower) {
    KnowThePace();
    SilentRun(0);
    DoubtfulRun(200 * ms, 60 * ms);
    EXPECT_TRUE(IsOwn(360 * ms, 60 * ms));
    EXPECT_TRUE(late_.IsLikelyOwn(74 * ms, 0)) << "it varies";
    EXPECT_TRUE(late_.IsLikelyOwn(20 * ms, 0));
}

TEST_F(LateRepliesTest, ADelayThatMovesWithTheRoundIsASensorThatIsTooLate) {
    KnowThePace();
    SilentRun(0);
    DoubtfulRun(200 * ms, 50 * ms);
    EXPECT_FALSE(IsOwn(360 * ms, 90 * ms));
    late_.SetAside(poll, 90 * ms);
    TimeOut(poll, 460 * ms);
    EXPECT_FALSE(IsOwn(600 * ms, 10 * ms)) << "as soon as usual, but 250 ms behind the run before";
    EXPECT_TRUE(late_.IsLikelyOwn(90 * ms, 0));
}

TEST_F(LateRepliesTest, ADoubtOutlivesOneSilentRunAndNoMore) {
    KnowThePace();
    SilentRun(0);
    DoubtfulRun(200 * ms, 70 * ms);
    SilentRun(360 * ms); // the late reply came after its end
    EXPECT_FALSE(late_.WantsMovedRound());
    EXPECT_FALSE(IsOwn(600 * ms, 30 * ms)) << "270 ms behind the run before, like the doubtful one";
    TimeOut(poll, 700 * ms);
    EXPECT_TRUE(IsOwn(800 * ms, 30 * ms));
}

TEST_F(LateRepliesTest, AnAnswerEndsADoubtAndSoDoesNothingOwed) {
    KnowThePace();
    SilentRun(0);
    DoubtfulRun(200 * ms, 60 * ms);
    late_.Answered(poll, 60 * ms);
    EXPECT_FALSE(late_.WantsMovedRound());
    DoubtfulRun(600 * ms, 60 * ms);
    late_.RunBegins(poll, 3000 * ms);
    EXPECT_FALSE(late_.WantsMovedRound());
}

TEST_F(LateRepliesTest, RoundsThatCannotBeMovedAreTrustedAfterAWhile) {
    KnowThePace();
    SilentRun(0);
    qint64 start = 102 * ms;
    for (int run = 0; run < 4; ++run, start += 102 * ms) {
        EXPECT_FALSE(IsOwn(start, 60 * ms)) << run;
        late_.SetAside(poll, 60 * ms);
        TimeOut(poll, start + timeout);
    }
    EXPECT_TRUE(IsOwn(start, 60 * ms));
}

TEST_F(LateRepliesTest, NoReplyComesLaterThanFiveTimeouts) {
    KnowThePace();
    TimeOut(poll, 0);
    late_.RunBegins(poll, 500 * ms - 1);
    EXPECT_TRUE(late_.IsOwed(poll));
    late_.RunBegins(poll, 500 * ms);
    EXPECT_FALSE(late_.IsOwed(poll));
}

TEST_F(LateRepliesTest, WithALongTimeoutHalfASecondBeyondItIsTheEnd) {
    KnowThePace();
    late_.NotAnswered(poll, 0, 1200 * ms);
    late_.RunBegins(poll, 1700 * ms - 1);
    EXPECT_TRUE(late_.IsOwed(poll));
    late_.RunBegins(poll, 1700 * ms);
    EXPECT_FALSE(late_.IsOwed(poll));
}

TEST_F(LateRepliesTest, BeforeThePaceIsKnownAReplyIsOwedForOneMoreTimeout) {
    TimeOut(poll, 0);
    late_.RunBegins(poll, timeout);
    EXPECT_FALSE(late_.IsOwed(poll));
}

TEST_F(LateRepliesTest, WhatComesBetweenTwoRunsPaysWhatIsOwed) {
    KnowThePace();
    TimeOut(poll, 0);
    QByteArray received = reply.first(5);
    late_.TakeFrom(received);
    EXPECT_TRUE(late_.IsOwed(poll)) << "it isn't whole yet";
    received = reply + reply;
    late_.TakeFrom(received);
    EXPECT_FALSE(late_.IsOwed(poll));
    EXPECT_EQ(received, reply) << "one was owed";
}

TEST_F(LateRepliesTest, ClearingForgetsThePaceToo) {
    late_.Answered(poll, 80 * ms);
    TimeOut(poll, 0);
    late_.Clear();
    EXPECT_FALSE(late_.IsOwed(poll));
    SilentRun(0);
    EXPECT_FALSE(IsOwn(50 * ms, 99 * ms));
}

} // namespace

} // namespace ztv

#include "link/LateReplies.h"

#include "tests/support/Frames.h"

#include <gtest/gtest.h>

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

    LateReplies late_;
};

TEST_F(LateRepliesTest, NothingIsOwedWhereNothingTimedOut) {
    KnowThePace();
    EXPECT_FALSE(late_.IsOwed(poll));
    EXPECT_EQ(late_.QuietUntilUs(poll, true), 0);
}

TEST_F(LateRepliesTest, AReadThatTimedOutIsOwedAReplyUntilAnAnswerComes) {
    TimeOut(poll, 0);
    EXPECT_TRUE(late_.IsOwed(poll));
    late_.Answered(poll, usual);
    EXPECT_FALSE(late_.IsOwed(poll));
}

TEST_F(LateRepliesTest, WhatIsOwedLooksLikeAnyReadOfThatSlaveAndQuantity) {
    TimeOut(poll, 0);
    EXPECT_TRUE(late_.IsOwed(Read(1, 40, 2))) << "the reply doesn't name where it starts";
    EXPECT_FALSE(late_.IsOwed(Read(2, 0, 2)));
    EXPECT_FALSE(late_.IsOwed(Read(1, 0, 3)));
    EXPECT_FALSE(late_.IsOwed(write));
}

TEST_F(LateRepliesTest, AWriteIsOwedNothingSinceItsEchoNamesIt) {
    TimeOut(write, 0);
    EXPECT_FALSE(late_.IsOwed(write));
    EXPECT_EQ(late_.QuietUntilUs(write, true), 0);
}

TEST_F(LateRepliesTest, ARunThatIsMadeOnceWaitsATimeoutLonger) {
    KnowThePace();
    TimeOut(poll, 1000 * ms);
    EXPECT_EQ(late_.QuietUntilUs(poll, true), 1100 * ms);
    EXPECT_EQ(late_.QuietUntilUs(Read(2, 0, 2), true), 0) << "what comes late can't be taken for its reply";
}

TEST_F(LateRepliesTest, ACycleKeepsItsPeriodOnceThePaceIsKnown) {
    TimeOut(poll, 1000 * ms);
    EXPECT_EQ(late_.QuietUntilUs(poll, false), 1100 * ms);
    late_.Clear();
    KnowThePace();
    TimeOut(poll, 1000 * ms);
    EXPECT_EQ(late_.QuietUntilUs(poll, false), 0);
}

TEST_F(LateRepliesTest, AReplyIsUnusualWhenItComesLaterThanTheOnesBefore) {
    EXPECT_FALSE(late_.IsUnusual(90 * ms, 0)) << "how soon the sensor answers isn't known";
    KnowThePace();
    EXPECT_FALSE(late_.IsUnusual(usual + 15 * ms, 0));
    EXPECT_TRUE(late_.IsUnusual(usual + 15 * ms + 1, 0));
    EXPECT_FALSE(late_.IsUnusual(usual + 15 * ms + 1, 1));
}

TEST_F(LateRepliesTest, AReplyWhoseDelayIsNotKnownTellsNothingOfThePace) {
    late_.Answered(poll, std::nullopt);
    EXPECT_FALSE(late_.IsUnusual(90 * ms, 0));
    KnowThePace();
    late_.Answered(poll, std::nullopt);
    EXPECT_FALSE(late_.IsUnusual(usual + 15 * ms, 0));
    EXPECT_TRUE(late_.IsUnusual(usual + 15 * ms + 1, 0));
}

TEST_F(LateRepliesTest, TheUsualDelayFollowsASlowReplyAtOnceAndAQuickOneByAndBy) {
    late_.Answered(poll, 80 * ms);
    late_.Answered(poll, 8 * ms); // 70 ms by now
    EXPECT_FALSE(late_.IsUnusual(85 * ms, 0));
    EXPECT_TRUE(late_.IsUnusual(86 * ms, 0));
}

TEST_F(LateRepliesTest, OnePassedOverIsOneOwedLess) {
    KnowThePace();
    TimeOut(poll, 0);
    late_.RunBegins(200 * ms);
    TimeOut(poll, 300 * ms);
    late_.RunBegins(400 * ms);
    late_.PassOver(poll);
    EXPECT_TRUE(late_.HasPassedOver());
    EXPECT_TRUE(late_.IsOwed(poll));
    late_.PassOver(poll);
    EXPECT_FALSE(late_.IsOwed(poll));
    late_.RunBegins(500 * ms);
    EXPECT_FALSE(late_.HasPassedOver());
}

TEST_F(LateRepliesTest, AfterTwoDoubtfulRunsInARowTheLineHasTimeUntilNothingCanBeOwed) {
    KnowThePace();
    TimeOut(poll, 0);
    for (int run = 1; run <= 2; ++run) {
        EXPECT_EQ(late_.QuietUntilUs(poll, false), 0);
        late_.RunBegins(run * 200 * ms);
        late_.PassOver(poll);
        TimeOut(poll, run * 200 * ms + timeout);
    }
    EXPECT_EQ(late_.QuietUntilUs(poll, false), 500 * ms + timeout + 4 * timeout);
    late_.FailedOtherwise();
    EXPECT_EQ(late_.QuietUntilUs(poll, false), 0);
}

TEST_F(LateRepliesTest, WhatIsLaterThanFiveTimeoutsComesNoMore) {
    KnowThePace();
    TimeOut(poll, 0);
    late_.RunBegins(500 * ms - 1);
    EXPECT_TRUE(late_.IsOwed(poll));
    late_.RunBegins(500 * ms);
    EXPECT_FALSE(late_.IsOwed(poll));
}

TEST_F(LateRepliesTest, WithALongTimeoutHalfASecondBeyondItIsTheEnd) {
    KnowThePace();
    late_.NotAnswered(poll, 0, 1200 * ms);
    late_.RunBegins(1700 * ms - 1);
    EXPECT_TRUE(late_.IsOwed(poll));
    late_.RunBegins(1700 * ms);
    EXPECT_FALSE(late_.IsOwed(poll));
}

TEST_F(LateRepliesTest, BeforeThePaceIsKnownOnlyWhatIsLikelyIsWaitedFor) {
    TimeOut(poll, 0);
    late_.RunBegins(timeout);
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
    KnowThePace();
    TimeOut(poll, 0);
    late_.Clear();
    EXPECT_FALSE(late_.IsOwed(poll));
    EXPECT_FALSE(late_.IsUnusual(99 * ms, 0));
}

} // namespace

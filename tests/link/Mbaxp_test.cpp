#include "link/Mbaxp.h"

#include "link/LinkStatus.h"
#include "tests/helpers/Frames.h"
#include "tests/helpers/Printers.h"
#include "tests/helpers/ScriptedLine.h"
#include "tests/helpers/Wait.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTimer>
#include <algorithm>
#include <ctime>
#include <gtest/gtest.h>
#include <memory>
#include <ostream>
#include <tuple>
#include <utility>
#include <vector>

namespace ztv {

namespace {

constexpr std::int16_t timeoutMs = 100;
constexpr LinkTransaction once = LinkTransaction::SingleWrite;
constexpr LinkTransaction cycle = LinkTransaction::Poll;

const QByteArray goodReply = WithCrc("01 03 04 00 01 00 02");
const QByteArray nextReply = WithCrc("01 03 04 00 03 00 04");
const QByteArray goodEcho = WithCrc("01 06 00 05 00 07");

double ProcessorSeconds() {
    return static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

} // namespace

class MbaxpTest : public testing::Test {
protected:
    using Event = std::pair<LinkTransaction, int>; // with the code of its status; 0: done

    MbaxpTest() {
        QObject::connect(&master_, &Mbaxp::TransactionDone, &master_, [this](LinkTransaction transaction) {
            events_.emplace_back(transaction, 0);
            if (onEvent_) {
                onEvent_();
            }
        });
        QObject::connect(&master_, &Mbaxp::TransactionFailed, &master_,
                         [this](LinkTransaction transaction, LinkStatus status) {
                             events_.emplace_back(transaction, CodeOf(status));
                             if (onEvent_) {
                                 onEvent_();
                             }
                         });
        master_.ResponseTimeout(timeoutMs);
        master_.BaudCode(8);
        EXPECT_TRUE(master_.OpenPort());
        EXPECT_TRUE(master_.DefineReadRegisters(once, 1, 0, 2, 1000));
        EXPECT_TRUE(master_.DefineReadRegisters(cycle, 1, 0, 2, 20));
    }

    // Runs the transaction once and returns its status.
    int Run(LinkTransaction transaction = once) {
        events_.clear();
        master_.TriggerOnce(transaction);
        EXPECT_TRUE(WaitUntil([this] { return !events_.empty(); }));
        EXPECT_EQ(events_.front().first, transaction);
        EXPECT_FALSE(master_.TransactionBusy(transaction));
        return events_.front().second;
    }

    void DefineWrite() {
        EXPECT_TRUE(master_.DefineWriteRegister(once, 1, 5, 1000));
        master_.RegisterValue(once, 0, 7);
    }

    // Expects that the fault gives `status`, and that the next request gets its own reply.
    void ExpectFault(int status) {
        line_->Answer(nextReply);
        EXPECT_EQ(Run(), status);
        EXPECT_EQ(Run(), 0);
        EXPECT_EQ(master_.RegisterValue(once, 0), 3);
        EXPECT_EQ(master_.RegisterValue(once, 1), 4);
    }

    std::unique_ptr<ScriptedLine> line_ = std::make_unique<ScriptedLine>();
    QString device_ = line_->Path();
    Mbaxp master_{[this](std::int16_t) { return device_; }};
    std::vector<Event> events_;
    std::function<void()> onEvent_;
};

TEST_F(MbaxpTest, ReadsIntoTheTransactionsBuffer) {
    line_->Answer(goodReply);
    EXPECT_EQ(Run(), 0);
    EXPECT_EQ(line_->Requests(), (std::vector<QByteArray>{WithCrc("01 03 00 00 00 02")}));
    EXPECT_EQ(master_.RegisterValue(once, 0), 1);
    EXPECT_EQ(master_.RegisterValue(once, 1), 2);
}

TEST_F(MbaxpTest, WritesTheWordsOfItsBuffer) {
    DefineWrite();
    line_->Answer(goodEcho);
    EXPECT_EQ(Run(), 0);
    EXPECT_TRUE(master_.DefineWriteRegisters(LinkTransaction::Download, 1, 0, 2, 4000));
    master_.RegisterValue(LinkTransaction::Download, 0, -1);
    master_.RegisterValue(LinkTransaction::Download, 1, 300);
    line_->Answer(WithCrc("01 10 00 00 00 02"));
    EXPECT_EQ(Run(LinkTransaction::Download), 0);
    EXPECT_EQ(line_->Requests(), (std::vector<QByteArray>{WithCrc("01 06 00 05 00 07"),
                                                          WithCrc("01 10 00 00 00 02 04 FF FF 01 2C")}));
}

// Faults of the line. ------------------------------------------------------------------------------

TEST_F(MbaxpTest, BadCrcIs11AndTheNextRequestIsGood) {
    QByteArray damaged = goodReply;
    damaged[4] = 0x55;
    line_->Answer(damaged);
    ExpectFault(11);
}

TEST_F(MbaxpTest, ByteCountDamagedUpwardsIs11AndTheNextRequestIsGood) {
    QByteArray damaged = goodReply;
    damaged[2] = 0x20;
    line_->Answer(damaged);
    ExpectFault(11);
}

TEST_F(MbaxpTest, ShortFrameIs13AndTheNextRequestIsGood) {
    line_->Answer(goodReply.first(5));
    ExpectFault(13);
}

TEST_F(MbaxpTest, NoReplyIs10AndTheNextRequestIsGood) {
    line_->AnswerNothing();
    ExpectFault(10);
}

TEST_F(MbaxpTest, LateReplyIs10AndIsNeverTakenForTheNext) {
    line_->Answer({{goodReply, timeoutMs + 40}});
    ExpectFault(10);
}

TEST_F(MbaxpTest, ReplyThatIsLateByMoreThanATimeoutIsToldByTheOneBehindIt) {
    // The late reply comes while the next request waits. The sensor answers that one immediately afterwards.
    line_->Answer(goodReply);
    EXPECT_EQ(Run(), 0);
    line_->Answer({{goodReply, 2 * timeoutMs + 40}});
    line_->Answer({{nextReply, 45}});
    EXPECT_EQ(Run(), 10);
    EXPECT_EQ(Run(), 0);
    EXPECT_EQ(master_.RegisterValue(once, 0), 3);
}

TEST_F(MbaxpTest, AnotherSlavesReplyIsPassedOver) {
    line_->Answer(WithCrc("02 03 04 00 08 00 09") + goodReply);
    EXPECT_EQ(Run(), 0);
    EXPECT_EQ(master_.RegisterValue(once, 0), 1);
    line_->Answer({{WithCrc("02 03 04 00 08 00 09"), 0}, {nextReply, 30}});
    EXPECT_EQ(Run(), 0);
    EXPECT_EQ(master_.RegisterValue(once, 0), 3);
}

TEST_F(MbaxpTest, WrongFunctionIs12AndTheNextRequestIsGood) {
    line_->Answer(WithCrc("01 04 04 00 01 00 02"));
    ExpectFault(12);
}

TEST_F(MbaxpTest, FewerRegistersThanAskedAre12AndTheNextRequestIsGood) {
    line_->Answer(WithCrc("01 03 02 00 01"));
    ExpectFault(12);
}

TEST_F(MbaxpTest, MoreRegistersThanAskedAre12AndTheNextRequestIsGood) {
    line_->Answer(WithCrc("01 03 06 00 01 00 02 00 03"));
    ExpectFault(12);
}

TEST_F(MbaxpTest, GarbageInFrontIsPassedOver) {
    line_->Answer(Hex("A5") + goodReply);
    ExpectFault(0);
}

TEST_F(MbaxpTest, TrailingByteIsDroppedAndTheNextRequestIsGood) {
    line_->Answer(goodReply + Hex("00"));
    ExpectFault(0);
}

TEST_F(MbaxpTest, EchoThatDiffersIs12AndTheNextRequestIsGood) {
    DefineWrite();
    line_->Answer(WithCrc("01 06 00 05 00 08"));
    line_->Answer(goodEcho);
    EXPECT_EQ(Run(), 12);
    EXPECT_EQ(Run(), 0);
}

TEST_F(MbaxpTest, ExceptionCodesPassThrough) {
    line_->Answer(WithCrc("01 83 02"));
    EXPECT_EQ(Run(), 2);
    line_->Answer(WithCrc("01 83 08"));
    EXPECT_EQ(Run(), 12);
}

TEST_F(MbaxpTest, ReplyInPiecesIsPutTogether) {
    std::vector<ScriptedLine::Chunk> pieces;
    for (const char byte : goodReply) {
        pieces.push_back({QByteArray(1, byte), 5});
    }
    line_->Answer(pieces);
    ExpectFault(0);
}

TEST_F(MbaxpTest, BytesThatCameBeforeTheRequestAreDropped) {
    line_->Send(goodReply);
    EXPECT_TRUE(WaitUntil([this] {
        static int turns = 0;
        return ++turns > 5;
    }));
    line_->Answer(nextReply);
    EXPECT_EQ(Run(), 0);
    EXPECT_EQ(master_.RegisterValue(once, 0), 3);
}

TEST_F(MbaxpTest, ABusyScreenInventsNoTimeout) {
    line_->Answer(goodReply);
    events_.clear();
    master_.TriggerOnce(once);
    EXPECT_TRUE(WaitUntil([this] { return !line_->Requests().empty(); }));
    // The reply is in the system's buffer, but the program is busy for longer than the timeout.
    timespec busy{0, 2 * timeoutMs * 1'000'000};
    nanosleep(&busy, nullptr);
    EXPECT_TRUE(WaitUntil([this] { return !events_.empty(); }));
    EXPECT_EQ(events_.front(), Event(once, 0));
}

TEST_F(MbaxpTest, ALineThatNeverFallsSilentHoldsNothingUpForGood) {
    QTimer babble;
    QObject::connect(&babble, &QTimer::timeout, [this] { line_->Send(Hex("55 AA 01 03")); });
    babble.start(1);
    line_->AnswerNothing();
    EXPECT_EQ(Run(), 11);
    line_->AnswerNothing();
    EXPECT_EQ(Run(), 11);
    babble.stop();
    line_->Answer(goodReply);
    EXPECT_EQ(Run(), 0);
}

TEST_F(MbaxpTest, ALateReplyIsKnownAlsoBehindWhatWasNoReply) {
    const std::pair<QByteArray, int> others[] = {{WithCrc("02 03 04 00 09 00 09"), 12}, // another slave's
                                                 {Hex("55"), 13}};                      // noise
    for (const auto &[other, status] : others) {
        SCOPED_TRACE(status);
        line_->Answer({{other, 0}, {goodReply, timeoutMs + 40}});
        line_->Answer(nextReply);
        EXPECT_EQ(Run(), status);
        EXPECT_EQ(Run(), 0);
        EXPECT_EQ(master_.RegisterValue(once, 0), 3);
    }
}

TEST_F(MbaxpTest, ALateReplyIsKnownAlsoBehindAnotherTransaction) {
    DefineWrite();
    EXPECT_TRUE(master_.DefineReadRegisters(cycle, 1, 0, 2, 200));
    line_->Answer(nextReply);
    EXPECT_EQ(Run(cycle), 0);
    events_.clear();
    line_->Answer({{goodReply, 280}}); // comes while the second round waits, long after the usual delay
    line_->AnswerNothing();            // to the write
    line_->AnswerNothing();            // to the second round
    line_->AnswerAlways(nextReply);
    onEvent_ = [this] {
        if (events_.size() == 1) {
            master_.TriggerOnce(once);
        }
    };
    master_.StartCyclic(cycle);
    EXPECT_TRUE(WaitUntil([this] { return events_.size() >= 4; }));
    EXPECT_EQ(events_, (std::vector<Event>{{cycle, 10}, {once, 10}, {cycle, 10}, {cycle, 0}}));
    EXPECT_EQ(master_.RegisterValue(cycle, 0), 3);
}

TEST_F(MbaxpTest, AMissedFirstReplyCostsOneTimeoutHoweverSlowTheSensor) {
    for (const int latencyMs : {0, 30, 80}) {
        SCOPED_TRACE(latencyMs);
        master_.ClosePort();
        EXPECT_TRUE(master_.OpenPort());
        EXPECT_TRUE(master_.DefineReadRegisters(cycle, 1, 0, 2, 500));
        events_.clear();
        line_->AnswerNothing();
        line_->Answer({{goodReply, latencyMs}});
        master_.StartCyclic(cycle);
        EXPECT_TRUE(WaitUntil([this] { return events_.size() >= 2; }));
        EXPECT_EQ(events_, (std::vector<Event>{{cycle, 10}, {cycle, 0}}));
    }
}

TEST_F(MbaxpTest, ALostReplyCostsOneTimeoutOnceTheSensorIsKnown) {
    EXPECT_TRUE(master_.DefineReadRegisters(cycle, 1, 0, 2, 200));
    line_->Answer({{goodReply, 60}});
    line_->AnswerNothing();
    line_->Answer({{goodReply, 60}});
    master_.StartCyclic(cycle);
    EXPECT_TRUE(WaitUntil([this] { return events_.size() >= 3; }));
    EXPECT_EQ(events_, (std::vector<Event>{{cycle, 0}, {cycle, 10}, {cycle, 0}}));
}

TEST_F(MbaxpTest, ALostReplyCostsOneTimeoutThoughTheDelayVariesByFortyMilliseconds) {
    EXPECT_TRUE(master_.DefineReadRegisters(cycle, 1, 0, 2, 200));
    line_->Answer({{goodReply, 25}});
    line_->AnswerNothing();
    for (int k = 0; k < 6; ++k) {
        line_->Answer({{goodReply, 60}});
    }
    master_.StartCyclic(cycle);
    EXPECT_TRUE(WaitUntil([this] { return events_.size() >= 8; }));
    EXPECT_EQ(std::count(events_.begin(), events_.end(), Event(cycle, 10)), 1);
    for (std::size_t k = 1; k < line_->Times().size(); ++k) {
        EXPECT_LT(line_->Times()[k] - line_->Times()[k - 1], std::chrono::milliseconds(280)) << k;
    }
}

TEST_F(MbaxpTest, ASensorThatHasBecomeMuchSlowerCostsTwoTimeoutsAndNoRound) {
    EXPECT_TRUE(master_.DefineReadRegisters(cycle, 1, 0, 2, 200));
    line_->Answer(goodReply);
    line_->AnswerNothing();
    for (int k = 0; k < 6; ++k) {
        line_->Answer({{goodReply, 70}});
    }
    master_.StartCyclic(cycle);
    EXPECT_TRUE(WaitUntil([this] { return events_.size() >= 8; }));
    EXPECT_EQ(std::count(events_.begin(), events_.end(), Event(cycle, 10)), 2);
    const auto whole = line_->Times()[7] - line_->Times()[0];
    EXPECT_GE(whole, std::chrono::milliseconds(7 * 200 - 50)); // the far end may see the first request late
    EXPECT_LT(whole, std::chrono::milliseconds(7 * 200 + 150)) << "the rounds stay on their grid";
}

TEST_F(MbaxpTest, AReplyThatWasReadAtTheDeadlineTellsNothingOfTheSensorsDelay) {
    EXPECT_TRUE(master_.DefineReadRegisters(cycle, 1, 0, 2, 200));
    line_->Answer(goodReply);
    line_->AnswerNothing();
    line_->Answer({{goodReply, 60}});
    master_.StartCyclic(cycle);
    EXPECT_TRUE(WaitUntil([this] { return !line_->Requests().empty(); }));
    timespec busy{0, 2 * timeoutMs * 1'000'000};
    nanosleep(&busy, nullptr);
    EXPECT_TRUE(WaitUntil([this] { return events_.size() >= 3; }));
    EXPECT_EQ(events_, (std::vector<Event>{{cycle, 0}, {cycle, 10}, {cycle, 0}}));
}

TEST_F(MbaxpTest, ALateReplyThatComesAsSoonAsUsualIsToldByTheOneBehindIt) {
    EXPECT_TRUE(master_.DefineReadRegisters(cycle, 1, 0, 2, 200));
    line_->Answer({{goodReply, 5}});
    line_->Answer({{goodReply, 204}});
    line_->Answer({{nextReply, 10}});
    master_.StartCyclic(cycle);
    EXPECT_TRUE(WaitUntil([this] { return events_.size() >= 3; }));
    EXPECT_EQ(events_, (std::vector<Event>{{cycle, 0}, {cycle, 10}, {cycle, 0}}));
    EXPECT_EQ(master_.RegisterValue(cycle, 0), 3);
}

TEST_F(MbaxpTest, ALostEchoCastsNoDoubtOnTheNextWrite) {
    DefineWrite();
    line_->AnswerNothing();
    EXPECT_EQ(Run(), 10);
    EXPECT_TRUE(master_.DefineWriteRegister(once, 1, 6, 1000));
    master_.RegisterValue(once, 0, 8);
    line_->Answer({{WithCrc("01 06 00 06 00 08"), 60}});
    EXPECT_EQ(Run(), 0);
}

TEST_F(MbaxpTest, ALateReplyAndItsOwnInOneLumpAreToldApart) {
    line_->Answer(goodReply);
    EXPECT_EQ(Run(), 0);
    line_->AnswerNothing();
    line_->Answer({{goodReply + nextReply, 60}}); // the late reply, immediately followed by its own
    EXPECT_EQ(Run(), 10);
    EXPECT_EQ(Run(), 0);
    EXPECT_EQ(master_.RegisterValue(once, 0), 3);
}

TEST_F(MbaxpTest, AReplyInPiecesBehindALateOneHasUntilTheDeadline) {
    master_.ClosePort();
    master_.ResponseTimeout(4 * timeoutMs);
    EXPECT_TRUE(master_.OpenPort());
    line_->Answer(goodReply);
    EXPECT_EQ(Run(), 0);
    line_->AnswerNothing();
    EXPECT_EQ(Run(), 10);
    // The rest comes at a time at which a reply could no longer begin.
    line_->Answer({{goodReply, 60}, {nextReply.first(4), 25}, {nextReply.mid(4), 100}});
    EXPECT_EQ(Run(), 0);
    EXPECT_EQ(master_.RegisterValue(once, 0), 3);
}

TEST_F(MbaxpTest, WhatABusyScreenFindsAtTheDeadlineMayBeALateReply) {
    const std::pair<QByteArray, int> rows[] = {{goodReply, 10}, {goodReply + nextReply, 0}};
    for (const auto &[answer, status] : rows) {
        master_.ClosePort();
        EXPECT_TRUE(master_.OpenPort());
        line_->Answer(WithCrc("01 03 04 00 05 00 06"));
        EXPECT_EQ(Run(), 0);
        line_->AnswerNothing();
        EXPECT_EQ(Run(), 10);
        line_->Answer(answer);
        events_.clear();
        const std::size_t before = line_->Requests().size();
        master_.TriggerOnce(once);
        EXPECT_TRUE(WaitUntil([&] { return line_->Requests().size() > before; }));
        timespec busy{0, 2 * timeoutMs * 1'000'000};
        nanosleep(&busy, nullptr);
        EXPECT_TRUE(WaitUntil([this] { return !events_.empty(); }));
        EXPECT_EQ(events_, (std::vector<Event>{{once, status}}));
        EXPECT_EQ(master_.RegisterValue(once, 0), status == 0 ? 3 : 5);
    }
}

TEST_F(MbaxpTest, ASensorThatIsAlwaysTooLateIsNeverTakenForAGoodOne) {
    EXPECT_TRUE(master_.DefineReadRegisters(cycle, 1, 0, 2, 200));
    line_->Answer(nextReply);
    EXPECT_EQ(Run(cycle), 0);
    events_.clear();
    for (int k = 0; k < 8; ++k) {
        line_->Answer({{goodReply, 260}});
    }
    master_.StartCyclic(cycle);
    EXPECT_TRUE(WaitUntil([this] { return events_.size() >= 6; }));
    for (const Event &event : events_) {
        EXPECT_EQ(event, Event(cycle, 10));
    }
}

TEST_F(MbaxpTest, ASensorThatIsLaterThanThePeriodIsNeverTakenForAGoodOne) {
    for (const int latencyMs : {245, 270, 290}) {
        SCOPED_TRACE(latencyMs);
        master_.ClosePort();
        EXPECT_TRUE(master_.OpenPort());
        EXPECT_TRUE(master_.DefineReadRegisters(cycle, 1, 0, 2, 200));
        line_->Answer(nextReply);
        EXPECT_EQ(Run(cycle), 0);
        events_.clear();
        for (int k = 0; k < 12; ++k) {
            line_->Answer({{goodReply, latencyMs}});
        }
        master_.StartCyclic(cycle);
        EXPECT_TRUE(WaitUntil([this] { return events_.size() >= 8; }));
        EXPECT_EQ(std::count(events_.begin(), events_.end(), Event(cycle, 10)), 8);
        master_.ClosePort();
        bool over = false; // the replies that are still on the way
        QTimer::singleShot(latencyMs + 50, &master_, [&over] { over = true; });
        EXPECT_TRUE(WaitUntil([&over] { return over; }));
        line_ = std::make_unique<ScriptedLine>();
        device_ = line_->Path();
    }
}

TEST_F(MbaxpTest, ASensorThatHasBecomeSlowIsTrustedAgain) {
    EXPECT_TRUE(master_.DefineReadRegisters(cycle, 1, 0, 2, 200));
    line_->Answer(nextReply);
    EXPECT_EQ(Run(cycle), 0);
    events_.clear();
    line_->AnswerNothing();
    for (int k = 0; k < 8; ++k) {
        line_->Answer({{goodReply, 60}});
    }
    master_.StartCyclic(cycle);
    EXPECT_TRUE(WaitUntil([this] { return events_.size() >= 6; }));
    EXPECT_EQ(events_.front(), Event(cycle, 10));
    EXPECT_EQ(events_[4], Event(cycle, 0));
    EXPECT_EQ(events_[5], Event(cycle, 0));
}

TEST_F(MbaxpTest, AReplyThatTheDeadlinesOwnLookBringsInEndsTheRequestOnce) {
    line_->AnswerNothing();
    events_.clear();
    master_.TriggerOnce(once);
    EXPECT_TRUE(WaitUntil([this] { return !line_->Requests().empty(); }));
    // The program is busy past the deadline. The reply comes after the deadline, but before the program
    // checks it.
    QTimer busy;
    QTimer reply;
    for (QTimer *timer : {&busy, &reply}) {
        timer->setSingleShot(true);
        timer->setTimerType(Qt::PreciseTimer);
    }
    QObject::connect(&busy, &QTimer::timeout, [] {
        timespec time{0, 2 * timeoutMs * 1'000'000};
        nanosleep(&time, nullptr);
    });
    QObject::connect(&reply, &QTimer::timeout, [this] { line_->Send(goodReply); });
    busy.start(timeoutMs / 5);
    reply.start(timeoutMs * 3 / 5);
    EXPECT_TRUE(WaitUntil([this] { return !events_.empty(); }));
    EXPECT_EQ(events_, (std::vector<Event>{{once, 0}}));
    line_->Answer(nextReply);
    EXPECT_EQ(Run(), 0);
    EXPECT_EQ(events_.size(), 1U);
}

TEST_F(MbaxpTest, NothingInAnotherSlavesFrameIsTakenForAReply) {
    const QByteArray inner = WithCrc("01 03 04 00 63 00 63");
    QByteArray foreign = Hex("02 03");
    foreign.append(static_cast<char>(inner.size()));
    line_->Answer({{WithCrc(foreign + inner), 0}, {goodReply, 10}});
    EXPECT_EQ(Run(), 0);
    EXPECT_EQ(master_.RegisterValue(once, 0), 1);
}

// An adapter with a local echo. ----------------------------------------------------------------------

struct FaultRow {
    const char *name;
    std::vector<ScriptedLine::Chunk> answer;
    int status;
};

void PrintTo(const FaultRow &row, std::ostream *stream) {
    *stream << row.name;
}

class MbaxpEchoTest : public MbaxpTest, public testing::WithParamInterface<std::tuple<bool, FaultRow>> {};

TEST_P(MbaxpEchoTest, AFaultOfTheLineBehavesWithALocalEchoAsWithout) {
    const auto &[givesBack, fault] = GetParam();
    line_->GiveBack(givesBack);
    line_->Answer(WithCrc("01 03 04 00 07 00 08"));
    EXPECT_EQ(Run(), 0);
    line_->Answer(fault.answer);
    ExpectFault(fault.status);
    EXPECT_EQ(master_.EchoIsPresent(), givesBack);
}

TEST_P(MbaxpEchoTest, AFaultAtTheFirstReadBehavesSoToo) {
    const auto &[givesBack, fault] = GetParam();
    line_->GiveBack(givesBack);
    line_->Answer(fault.answer);
    ExpectFault(fault.status);
    EXPECT_EQ(master_.EchoIsPresent(), givesBack);
}

INSTANTIATE_TEST_SUITE_P(
    Line, MbaxpEchoTest,
    testing::Combine(
        testing::Bool(),
        testing::Values(FaultRow{"bad CRC", {{Hex("01 03 04 00 01 00 02 11 11"), 0}}, 11},
                        FaultRow{
                            "byte count corrupted upwards", {{Hex("01 03 20 00 01 00 02 2A 32"), 0}}, 11},
                        FaultRow{"short frame", {{goodReply.first(5), 0}}, 13}, FaultRow{"no reply", {}, 10},
                        FaultRow{"late reply", {{goodReply, timeoutMs + 40}}, 10},
                        FaultRow{"wrong slave, then the right reply",
                                 {{WithCrc("02 03 04 00 08 00 09"), 0}, {goodReply, 20}},
                                 0},
                        FaultRow{"wrong function", {{WithCrc("01 04 04 00 01 00 02"), 0}}, 12},
                        FaultRow{"fewer registers", {{WithCrc("01 03 02 00 01"), 0}}, 12},
                        FaultRow{"more registers", {{WithCrc("01 03 06 00 01 00 02 00 03"), 0}}, 12},
                        FaultRow{"garbage in front", {{Hex("A5") + goodReply, 0}}, 0},
                        FaultRow{"trailing byte", {{goodReply + Hex("00"), 0}}, 0},
                        FaultRow{"exception", {{WithCrc("01 83 02"), 0}}, 2})));

TEST_F(MbaxpTest, TheEchoOfAWriteThatNobodyReceivedConfirmsNothing) {
    line_->GiveBack(true);
    line_->AnswerNothing();
    EXPECT_EQ(Run(cycle), 10) << "the sensor is dead; the copy tells of the echo";
    DefineWrite();
    line_->AnswerNothing();
    EXPECT_EQ(Run(), 10);
    line_->Answer(goodEcho);
    EXPECT_EQ(Run(), 0);
    line_->Answer(WithCrc("01 06 00 05 00 08"));
    EXPECT_EQ(Run(), 12) << "the reply's echo of the value differs";
    line_->Answer({{goodEcho.first(3), 10}, {goodEcho.mid(3), 10}});
    EXPECT_EQ(Run(), 0);
    EXPECT_TRUE(master_.DefineWriteRegisters(LinkTransaction::Download, 1, 0, 2, 4000));
    line_->AnswerNothing();
    EXPECT_EQ(Run(LinkTransaction::Download), 10);
    line_->Answer(WithCrc("01 10 00 00 00 02"));
    EXPECT_EQ(Run(LinkTransaction::Download), 0);
}

TEST_F(MbaxpTest, AfterOpeningAReadGoesBeforeAWrite) {
    line_->GiveBack(true);
    DefineWrite();
    master_.TriggerOnce(once);
    master_.StartCyclic(cycle);
    EXPECT_TRUE(WaitUntil([this] { return events_.size() >= 2; }));
    EXPECT_EQ(events_[0], Event(cycle, 10));
    EXPECT_EQ(events_[1], Event(once, 10)) << "its own echo doesn't confirm it";
}

TEST_F(MbaxpTest, AnEchoThatComesInPiecesOrLateIsTakenOut) {
    const QByteArray request = WithCrc("01 03 00 00 00 02");
    line_->Answer({{request.first(3), 0}, {request.mid(3), 15}, {goodReply, 5}});
    EXPECT_EQ(Run(), 0);
    EXPECT_TRUE(master_.EchoIsPresent());
    line_->Answer({{request, 40}, {nextReply, 20}});
    EXPECT_EQ(Run(), 0);
    EXPECT_EQ(master_.RegisterValue(once, 0), 3);
    line_->Answer(request + goodReply);
    EXPECT_EQ(Run(), 0);
    EXPECT_EQ(master_.RegisterValue(once, 0), 1);
}

TEST_F(MbaxpTest, ALateReplyInFrontOfTheEchoIsDropped) {
    const QByteArray request = WithCrc("01 03 00 00 00 02");
    line_->Answer(request + goodReply);
    EXPECT_EQ(Run(), 0);
    line_->Answer(goodReply + request + nextReply);
    EXPECT_EQ(Run(), 0);
    EXPECT_EQ(master_.RegisterValue(once, 0), 3);
}

TEST_F(MbaxpTest, ADamagedOrMissingEchoCostsNoReadAndConfirmsNoWrite) {
    const QByteArray request = WithCrc("01 03 00 00 00 02");
    QByteArray damaged = request;
    damaged[5] = 0x12;
    line_->Answer(request + goodReply);
    EXPECT_EQ(Run(), 0);
    for (const QByteArray &copy : {damaged, QByteArray()}) {
        line_->Answer(copy + nextReply);
        EXPECT_EQ(Run(), 0);
        EXPECT_EQ(master_.RegisterValue(once, 0), 3);
    }
    DefineWrite();
    line_->Answer(goodEcho.first(7));
    EXPECT_NE(Run(), 0);
    line_->Answer(goodEcho);
    EXPECT_NE(Run(), 0);
}

TEST_F(MbaxpTest, GarbageInFrontOfEveryReplyCostsNoWrite) {
    DefineWrite();
    const QByteArray garbage = Hex("FF");
    for (int run = 0; run < 3; ++run) {
        line_->Answer(garbage + goodReply);
        EXPECT_EQ(Run(cycle), 0);
        line_->Answer(garbage + goodEcho);
        EXPECT_EQ(Run(), 0) << run;
    }
    EXPECT_FALSE(master_.EchoIsPresent());
}

TEST_F(MbaxpTest, TheEchoIsForgottenWithThePort) {
    line_->GiveBack(true);
    line_->Answer(goodReply);
    EXPECT_EQ(Run(), 0);
    line_->GiveBack(false);
    master_.ClosePort();
    EXPECT_TRUE(master_.OpenPort());
    EXPECT_FALSE(master_.EchoIsPresent());
    DefineWrite();
    line_->Answer(goodEcho);
    EXPECT_EQ(Run(), 0);
}

// The tap. ------------------------------------------------------------------------------------------

class MbaxpTapTest : public MbaxpTest {
protected:
    using Seen = std::tuple<LineFrame::Kind, QByteArray, int>; // kind, bytes, status

    MbaxpTapTest() {
        QObject::connect(&master_.Tap(), &LineTap::FrameSeen, [this](const LineFrame &frame) {
            seen_.emplace_back(frame.kind, frame.bytes, frame.status);
            transactions_.push_back(frame.transaction);
            times_.push_back(frame.time);
        });
    }

    const QByteArray request_ = WithCrc("01 03 00 00 00 02");
    std::vector<Seen> seen_;
    std::vector<std::optional<LinkTransaction>> transactions_;
    std::vector<std::chrono::system_clock::time_point> times_;
};

TEST_F(MbaxpTapTest, ReportsARequestAndItsReplyWithVerdictAndTransaction) {
    line_->Answer({{goodReply, 20}});
    EXPECT_EQ(Run(), 0);
    EXPECT_EQ(seen_, (std::vector<Seen>{{LineFrame::Kind::Request, request_, 0},
                                        {LineFrame::Kind::Reply, goodReply, 0}}));
    EXPECT_EQ(transactions_, (std::vector<std::optional<LinkTransaction>>{once, once}));
    EXPECT_GE(times_[1] - times_[0], std::chrono::milliseconds(19));
    EXPECT_LE(times_[1], std::chrono::system_clock::now());
}

TEST_F(MbaxpTapTest, ReportsATimeoutAsAnEmptyReplyAndADamagedOneWithItsBytes) {
    QByteArray damaged = goodReply;
    damaged[4] = 0x55;
    line_->AnswerNothing();
    EXPECT_EQ(Run(), 10);
    EXPECT_EQ(seen_.back(), Seen(LineFrame::Kind::Reply, {}, 10));
    line_->Answer(damaged);
    EXPECT_EQ(Run(cycle), 11);
    EXPECT_EQ(seen_.back(), Seen(LineFrame::Kind::Reply, damaged, 11));
    EXPECT_EQ(transactions_.back(), cycle);
}

TEST_F(MbaxpTapTest, ReportsTheAdaptersCopyApart) {
    line_->GiveBack(true);
    line_->Answer(goodReply);
    EXPECT_EQ(Run(), 0);
    EXPECT_EQ(seen_, (std::vector<Seen>{{LineFrame::Kind::Request, request_, 0},
                                        {LineFrame::Kind::Echo, request_, 0},
                                        {LineFrame::Kind::Reply, goodReply, 0}}));
}

TEST_F(MbaxpTapTest, ReportsALateReplyAsOne) {
    line_->Answer({{goodReply, timeoutMs + 40}});
    line_->Answer(nextReply);
    EXPECT_EQ(Run(), 10);
    EXPECT_EQ(Run(), 0);
    EXPECT_EQ(seen_, (std::vector<Seen>{{LineFrame::Kind::Request, request_, 0},
                                        {LineFrame::Kind::Reply, {}, 10},
                                        {LineFrame::Kind::LateReply, goodReply, 0},
                                        {LineFrame::Kind::Request, request_, 0},
                                        {LineFrame::Kind::Reply, nextReply, 0}}));
}

TEST_F(MbaxpTapTest, ReportsTheReplyThatWasSetAsideAsWhatItTurnedOutToBe) {
    line_->Answer(goodReply);
    EXPECT_EQ(Run(), 0);
    line_->AnswerNothing();
    EXPECT_EQ(Run(), 10);
    seen_.clear();
    line_->Answer({{goodReply + nextReply, 20}});
    EXPECT_EQ(Run(), 0);
    ASSERT_EQ(seen_.size(), 3U);
    EXPECT_EQ(seen_[1], Seen(LineFrame::Kind::LateReply, goodReply, 0));
    EXPECT_EQ(seen_[2], Seen(LineFrame::Kind::Reply, nextReply, 0));
    EXPECT_TRUE(master_.DefineReadRegisters(cycle, 1, 0, 2, 150)); // it doesn't wait for the late one
    line_->AnswerNothing();
    line_->Answer(nextReply);
    events_.clear();
    master_.StartCyclic(cycle);
    EXPECT_TRUE(WaitUntil([this] { return events_.size() == 2; }));
    EXPECT_EQ(seen_.back(), Seen(LineFrame::Kind::Reply, nextReply, 0)) << "none followed: it was its own";
}

// Hang-up. ------------------------------------------------------------------------------------------

TEST_F(MbaxpTest, HangUpEndsTheRequestOnceWith15) {
    line_->AnswerNothing();
    events_.clear();
    master_.TriggerOnce(once);
    EXPECT_TRUE(WaitUntil([this] { return !line_->Requests().empty(); }));
    line_->HangUp();
    EXPECT_TRUE(WaitUntil([this] { return !events_.empty(); }));
    EXPECT_EQ(events_, (std::vector<Event>{{once, 15}}));
    EXPECT_TRUE(master_.PortIsOpen());
    EXPECT_FALSE(master_.TransactionBusy(once));
}

TEST_F(MbaxpTest, EachRoundOfACycleReports15WhileTheDeviceIsGoneAndPollsAgainWhenItIsBack) {
    line_->AnswerAlways(goodReply);
    master_.StartCyclic(cycle);
    EXPECT_TRUE(WaitUntil([this] { return events_.size() >= 2; }));
    line_->HangUp();
    EXPECT_TRUE(WaitUntil([this] { return events_.back().second == 15; }));

    const double before = ProcessorSeconds();
    const std::size_t reported = events_.size();
    EXPECT_TRUE(WaitUntil([this, reported] { return events_.size() >= reported + 20; }));
    EXPECT_LT(ProcessorSeconds() - before, 0.2); // 20 rounds of 20 ms, idle except for the attempts
    for (std::size_t k = reported; k < events_.size(); ++k) {
        EXPECT_EQ(events_[k], Event(cycle, 15));
    }

    line_ = std::make_unique<ScriptedLine>();
    device_ = line_->Path();
    line_->AnswerAlways(nextReply);
    EXPECT_TRUE(WaitUntil([this] { return events_.back() == Event(cycle, 0); }));
    EXPECT_EQ(master_.RegisterValue(cycle, 0), 3);
}

TEST_F(MbaxpTest, AReadThatIsDueGoesBeforeAWriteWhenTheDeviceComesBack) {
    line_->HangUp();
    onEvent_ = [this] {
        if (events_.size() == 1) {
            line_ = std::make_unique<ScriptedLine>();
            device_ = line_->Path();
            line_->GiveBack(true); // another adapter, with a dead sensor
            DefineWrite();
            master_.TriggerOnce(once);
            master_.StartCyclic(cycle); // due at once
        }
    };
    master_.StartCyclic(cycle);
    EXPECT_TRUE(WaitUntil([this] { return events_.size() >= 3; }));
    EXPECT_EQ(events_[0], Event(cycle, 15));
    EXPECT_EQ(events_[1], Event(cycle, 10));
    EXPECT_EQ(events_[2], Event(once, 10)) << "its own echo doesn't confirm it";
}

TEST_F(MbaxpTest, OneShotWhileTheDeviceIsGoneIs15) {
    line_->HangUp();
    EXPECT_EQ(Run(), 15);
    EXPECT_EQ(Run(), 15);
}

TEST_F(MbaxpTest, AWriteThatTheDeviceRefusesIs14) {
    line_->Answer(goodReply);
    EXPECT_EQ(Run(), 0);
    QElapsedTimer silence; // otherwise the request would wait, and the hang-up be reported first
    silence.start();
    EXPECT_TRUE(WaitUntil([&silence] { return silence.hasExpired(10); }));
    events_.clear();
    line_->HangUp();
    master_.TriggerOnce(once);
    QCoreApplication::sendPostedEvents(&master_);
    EXPECT_EQ(events_, (std::vector<Event>{{once, 14}}));
    EXPECT_FALSE(master_.TransactionBusy(once));
    EXPECT_EQ(Run(), 15);
    EXPECT_EQ(events_.size(), 1U);
}

// Scheduling. ---------------------------------------------------------------------------------------

TEST_F(MbaxpTest, OneShotsRunFirstInFirstOut) {
    EXPECT_TRUE(master_.DefineReadRegisters(LinkTransaction::SearchProbe, 1, 0, 2, 50));
    EXPECT_TRUE(master_.DefineReadRegisters(LinkTransaction::AddressingProbe, 1, 0, 2, 50));
    line_->AnswerAlways(goodReply);
    const LinkTransaction order[] = {LinkTransaction::AddressingProbe, once, LinkTransaction::SearchProbe};
    for (const LinkTransaction transaction : order) {
        master_.TriggerOnce(transaction);
        EXPECT_TRUE(master_.TransactionBusy(transaction));
    }
    EXPECT_TRUE(WaitUntil([this] { return events_.size() == 3; }));
    EXPECT_EQ(events_, (std::vector<Event>{{order[0], 0}, {order[1], 0}, {order[2], 0}}));
}

TEST_F(MbaxpTest, ARunThatWaitsAlreadyIsNotQueuedAgain) {
    line_->AnswerAlways(goodReply);
    master_.TriggerOnce(once);
    master_.TriggerOnce(once);
    EXPECT_TRUE(WaitUntil([this] { return !events_.empty(); }));
    EXPECT_EQ(Run(), 0);
    EXPECT_EQ(line_->Requests().size(), 2U);
}

TEST_F(MbaxpTest, NeitherOneShotsNorACycleStarve) {
    line_->AnswerAlways(goodReply);
    EXPECT_TRUE(master_.DefineReadRegisters(cycle, 1, 0, 2, 1)); // always due
    onEvent_ = [this] { master_.TriggerOnce(once); };            // always another one waiting
    master_.StartCyclic(cycle);
    EXPECT_TRUE(WaitUntil([this] { return events_.size() >= 21; }));
    for (std::size_t k = 1; k < 20; ++k) {
        EXPECT_NE(events_[k].first, events_[k - 1].first) << k;
    }
}

TEST_F(MbaxpTest, CycleKeepsItsPeriodFromStartToStart) {
    constexpr int periodMs = 60;
    constexpr int replyMs = 40;
    EXPECT_TRUE(master_.DefineReadRegisters(cycle, 1, 0, 2, periodMs));
    for (int k = 0; k < 11; ++k) {
        line_->Answer({{goodReply, replyMs}});
    }
    master_.StartCyclic(cycle);
    EXPECT_TRUE(WaitUntil([this] { return line_->Times().size() >= 11; }));
    const auto whole = line_->Times()[10] - line_->Times()[0];
    EXPECT_GE(whole, std::chrono::milliseconds(10 * periodMs - 5));
    EXPECT_LT(whole, std::chrono::milliseconds(10 * periodMs + 5 * replyMs)); // from start to start
}

TEST_F(MbaxpTest, CycleKeepsItsPeriodWithASilentSensor) {
    constexpr int periodMs = 130;
    EXPECT_TRUE(master_.DefineReadRegisters(cycle, 1, 0, 2, periodMs));
    line_->Answer(goodReply);
    master_.StartCyclic(cycle);
    EXPECT_TRUE(WaitUntil([this] { return line_->Times().size() >= 6; }));
    const auto whole = line_->Times()[5] - line_->Times()[0];
    EXPECT_LT(whole, std::chrono::milliseconds(5 * periodMs + 2 * timeoutMs));
}

struct PeriodRow {
    std::int16_t baudCode;
    std::int16_t timeoutMs;
    int periodMs;
};

class MbaxpPeriodTest : public MbaxpTest, public testing::WithParamInterface<PeriodRow> {};

TEST_P(MbaxpPeriodTest, ACycleKeepsItsPeriodWhileNobodyHasEverAnswered) {
    const PeriodRow &row = GetParam();
    master_.ClosePort();
    master_.BaudCode(row.baudCode);
    master_.ResponseTimeout(row.timeoutMs);
    EXPECT_TRUE(master_.OpenPort());
    EXPECT_TRUE(master_.DefineReadRegisters(cycle, 1, 0, 2, row.periodMs));
    master_.StartCyclic(cycle);
    constexpr int rounds = 4;
    EXPECT_TRUE(WaitUntil([this] { return line_->Times().size() > rounds; }));
    const auto whole = line_->Times()[rounds] - line_->Times()[0];
    // A round that waited for half a period more would cost two periods in all.
    EXPECT_GE(whole, std::chrono::milliseconds(rounds * row.periodMs - row.periodMs / 4));
    EXPECT_LT(whole, std::chrono::milliseconds((rounds + 1) * row.periodMs));
    EXPECT_EQ(std::count(events_.begin(), events_.end(), Event(cycle, 10)), rounds);
}

// The addressing probe at 9600, the poll at 9600, 19200 and 38400.
INSTANTIATE_TEST_SUITE_P(Program, MbaxpPeriodTest,
                         testing::Values(PeriodRow{5, 350, 500}, PeriodRow{7, 200, 300},
                                         PeriodRow{8, 100, 200}));

TEST_F(MbaxpTest, AOneShotThatWaitsForALateReplyHoldsNoCycleUp) {
    EXPECT_TRUE(master_.DefineReadRegisters(cycle, 1, 0, 2, 130));
    master_.StartCyclic(cycle);
    onEvent_ = [this] {
        if (events_.size() == 1) {
            master_.TriggerOnce(once); // it resembles the round without a reply
        }
    };
    EXPECT_TRUE(WaitUntil([this] { return events_.size() >= 3; }));
    EXPECT_EQ(events_[1].first, cycle);
    EXPECT_LT(line_->Times()[1] - line_->Times()[0], std::chrono::milliseconds(130 + 60));
}

TEST_F(MbaxpTest, FailedRoundDoesNotEndTheCycle) {
    line_->AnswerNothing();
    line_->Answer(WithCrc("01 83 06"));
    line_->AnswerAlways(goodReply);
    master_.StartCyclic(cycle);
    EXPECT_TRUE(WaitUntil([this] { return events_.size() >= 3; }));
    EXPECT_EQ(events_[0], Event(cycle, 10));
    EXPECT_EQ(events_[1], Event(cycle, 6));
    EXPECT_EQ(events_[2], Event(cycle, 0));
    EXPECT_TRUE(master_.TransactionBusy(cycle));
}

TEST_F(MbaxpTest, StoppedCycleStaysStill) {
    line_->AnswerAlways(goodReply);
    onEvent_ = [this] { master_.StopCyclic(cycle); };
    master_.StartCyclic(cycle);
    EXPECT_TRUE(WaitUntil([this] { return !events_.empty(); }));
    EXPECT_FALSE(master_.TransactionBusy(cycle));
    EXPECT_EQ(Run(once), 0);
    EXPECT_EQ(line_->Requests().size(), 2U);
}

TEST_F(MbaxpTest, AOneShotIsBusyUntilItsEventHasBeenDelivered) {
    for (const bool answered : {true, false}) {
        SCOPED_TRACE(answered);
        if (answered) {
            line_->Answer(goodReply);
        }
        bool busy = false;
        onEvent_ = [&] { busy = master_.TransactionBusy(once); };
        EXPECT_EQ(Run(), answered ? 0 : 10);
        EXPECT_TRUE(busy);
    }
}

TEST_F(MbaxpTest, AHandlerThatWaitsForItsOwnTransactionComesThrough) {
    line_->Answer(goodReply);
    bool ended = false;
    onEvent_ = [&] { ended = WaitUntil([this] { return !master_.TransactionBusy(once); }); };
    EXPECT_EQ(Run(), 0);
    EXPECT_TRUE(ended);
}

TEST_F(MbaxpTest, AOneShotThatItsOwnHandlerAsksForAgainRunsAgain) {
    line_->AnswerAlways(goodReply);
    onEvent_ = [this] {
        if (events_.size() == 1) {
            master_.TriggerOnce(once);
        }
    };
    master_.TriggerOnce(once);
    EXPECT_TRUE(WaitUntil([this] { return events_.size() == 2; }));
    EXPECT_FALSE(master_.TransactionBusy(once));
    EXPECT_EQ(line_->Requests().size(), 2U);
}

TEST_F(MbaxpTest, AHandlerMayCloseThePortAndRunAgain) {
    line_->AnswerAlways(goodReply);
    onEvent_ = [this] {
        if (events_.size() == 1) {
            master_.ClosePort();
            EXPECT_FALSE(master_.TransactionBusy(once));
            EXPECT_TRUE(master_.OpenPort());
            master_.TriggerOnce(once);
        }
    };
    master_.TriggerOnce(once);
    EXPECT_TRUE(WaitUntil([this] { return events_.size() == 2; }));
    EXPECT_FALSE(master_.TransactionBusy(once));
}

TEST_F(MbaxpTest, RunsGoOnWhileAHandlerKeepsABoxOpen) {
    line_->AnswerAlways(goodReply);
    bool nested = false;
    qint64 nestedMs = 0;
    onEvent_ = [&] {
        if (!nested) {
            nested = true;
            QElapsedTimer elapsed;
            elapsed.start();
            EXPECT_TRUE(WaitUntil([this] { return events_.size() >= 4; }));
            nestedMs = elapsed.elapsed();
        }
    };
    master_.StartCyclic(cycle);
    EXPECT_TRUE(WaitUntil([this] { return events_.size() >= 4; }));
    // Replies are processed as they come, not at the deadline.
    EXPECT_LT(nestedMs, 3 * timeoutMs);
}

TEST_F(MbaxpTest, KeepsTheSilentIntervalBetweenFrames) {
    line_->AnswerAlways(goodReply);
    onEvent_ = [this] { master_.TriggerOnce(once); };
    master_.TriggerOnce(once);
    EXPECT_TRUE(WaitUntil([this] { return line_->Times().size() >= 10; }));
    for (std::size_t k = 1; k < 10; ++k) {
        EXPECT_GE(line_->Times()[k] - line_->Times()[k - 1], std::chrono::microseconds(1750)) << k;
    }
}

TEST_F(MbaxpTest, WaitsLongerBetweenFramesOnASlowLine) {
    master_.ClosePort();
    master_.BaudCode(3); // 3.5 characters of 10 bits at 2400 bits per second are 14.6 ms
    EXPECT_TRUE(master_.OpenPort());
    line_->AnswerAlways(goodReply);
    onEvent_ = [this] { master_.TriggerOnce(once); };
    master_.TriggerOnce(once);
    EXPECT_TRUE(WaitUntil([this] { return line_->Times().size() >= 4; }));
    for (std::size_t k = 1; k < 4; ++k) {
        EXPECT_GE(line_->Times()[k] - line_->Times()[k - 1], std::chrono::microseconds(14500)) << k;
    }
}

// Port and definitions. -----------------------------------------------------------------------------

TEST_F(MbaxpTest, ClosingEndsEveryTransactionWithoutAnEvent) {
    line_->AnswerNothing();
    master_.StartCyclic(cycle);
    master_.TriggerOnce(once);
    EXPECT_TRUE(WaitUntil([this] { return !line_->Requests().empty(); }));
    master_.ClosePort();
    EXPECT_FALSE(master_.PortIsOpen());
    EXPECT_FALSE(master_.TransactionBusy(once));
    EXPECT_FALSE(master_.TransactionBusy(cycle));
    bool late = false;
    QTimer::singleShot(2 * timeoutMs, &master_, [&late] { late = true; });
    EXPECT_TRUE(WaitUntil([&late] { return late; }));
    EXPECT_TRUE(events_.empty());
}

TEST_F(MbaxpTest, DefinitionsSurviveAClosedPort) {
    master_.ClosePort();
    EXPECT_TRUE(master_.OpenPort());
    line_->Answer(goodReply);
    EXPECT_EQ(Run(), 0);
}

TEST_F(MbaxpTest, OpeningTwiceIsRefusedWith48) {
    EXPECT_FALSE(master_.OpenPort());
    EXPECT_EQ(master_.LastError(), LinkStatus::AlreadyOpen);
}

TEST_F(MbaxpTest, APortThatIsNotThereIsRefusedWith47) {
    master_.ClosePort();
    device_ = QStringLiteral("/dev/there-is-no-such-port");
    EXPECT_FALSE(master_.OpenPort());
    EXPECT_EQ(master_.LastError(), LinkStatus::OpenFailed);
    EXPECT_FALSE(master_.PortIsOpen());
}

TEST_F(MbaxpTest, SettingsWaitForTheNextOpening) {
    master_.ResponseTimeout(1);
    master_.BaudCode(3);
    line_->Answer({{goodReply, 40}});
    EXPECT_EQ(Run(), 0);
}

TEST_F(MbaxpTest, RunsNothingOnAClosedPortOrWithoutADefinition) {
    master_.TriggerOnce(LinkTransaction::SearchProbe);
    EXPECT_EQ(master_.LastError(), LinkStatus::DataNotInitialized);
    EXPECT_FALSE(master_.TransactionBusy(LinkTransaction::SearchProbe));
    master_.ClosePort();
    master_.StartCyclic(cycle);
    EXPECT_EQ(master_.LastError(), LinkStatus::HandleError);
    EXPECT_FALSE(master_.TransactionBusy(cycle));
    for (const LinkTransaction number : {LinkTransaction{-1}, LinkTransaction{Mbaxp::TransactionCount}}) {
        master_.TriggerOnce(number);
        EXPECT_EQ(master_.LastError(), LinkStatus::IndexError);
        EXPECT_FALSE(master_.TransactionBusy(number));
    }
}

TEST_F(MbaxpTest, RefusesADefinitionThatNoFrameHolds) {
    EXPECT_TRUE(master_.DefineReadRegisters(LinkTransaction::SearchProbe, 1, 0, 125, 1));
    EXPECT_TRUE(master_.DefineWriteRegisters(LinkTransaction::SearchProbe, 247, 0, 123, 1));
    const std::vector<bool> results = {
        master_.DefineReadRegisters(LinkTransaction::SearchProbe, 1, 0, 126, 1),
        master_.DefineReadRegisters(LinkTransaction::SearchProbe, 1, 0, 0, 1),
        master_.DefineWriteRegisters(LinkTransaction::SearchProbe, 1, 0, 124, 1),
        master_.DefineReadRegisters(LinkTransaction::SearchProbe, 0, 0, 1, 1),
        master_.DefineReadRegisters(LinkTransaction::SearchProbe, 248, 0, 1, 1),
        master_.DefineWriteRegister(LinkTransaction::SearchProbe, 1, -1, 1),
        master_.DefineReadRegisters(LinkTransaction::SearchProbe, 1, 65535, 2, 1),
        master_.DefineReadRegisters(LinkTransaction::SearchProbe, 1, 2147483647, 2, 1),
        master_.DefineReadRegisters(LinkTransaction{-1}, 1, 0, 1, 1),
        master_.DefineReadRegisters(LinkTransaction{Mbaxp::TransactionCount}, 1, 0, 1, 1),
    };
    EXPECT_EQ(results, std::vector<bool>(results.size(), false));
    EXPECT_EQ(master_.LastError(), LinkStatus::IndexError);
}

TEST_F(MbaxpTest, ARefusedDefinitionLeavesNoneBehind) {
    EXPECT_FALSE(master_.DefineReadRegisters(once, 300, 0, 2, 1));
    master_.TriggerOnce(once);
    EXPECT_EQ(master_.LastError(), LinkStatus::DataNotInitialized);
    EXPECT_FALSE(master_.TransactionBusy(once));
}

TEST_F(MbaxpTest, OpensForSerialRtuAlone) {
    master_.ClosePort();
    master_.LineModeB(0);
    EXPECT_FALSE(master_.OpenPort());
    EXPECT_EQ(master_.LastError(), LinkStatus::ProtocolModeRefused);
    master_.LineModeB(1);
    EXPECT_TRUE(master_.OpenPort());
}

TEST_F(MbaxpTest, ABufferReads0WhereNothingWasSet) {
    EXPECT_EQ(master_.RegisterValue(once, 2), 0); // one past its end
    EXPECT_EQ(master_.RegisterValue(once, -1), 0);
    EXPECT_EQ(master_.RegisterValue(LinkTransaction{99}, 0), 0);
    line_->Answer(goodReply);
    EXPECT_EQ(Run(), 0);
    EXPECT_EQ(master_.RegisterValue(once, 2), 0);
}

TEST_F(MbaxpTest, ABufferKeepsItsWordsThroughADefinition) {
    EXPECT_TRUE(master_.DefineWriteRegisters(once, 1, 0, 2, 1000));
    master_.RegisterValue(once, 0, 11);
    master_.RegisterValue(once, 1, 12);
    EXPECT_TRUE(master_.DefineWriteRegisters(once, 1, 1, 3, 1000));
    EXPECT_EQ(master_.RegisterValue(once, 0), 11);
    EXPECT_EQ(master_.RegisterValue(once, 1), 12);
    EXPECT_EQ(master_.RegisterValue(once, 2), 0);
}

TEST_F(MbaxpTest, SettingAWordOutsideTheBufferIsAnIndexError) {
    master_.RegisterValue(once, 2, 5);
    EXPECT_EQ(master_.LastError(), LinkStatus::IndexError);
    master_.RegisterValue(once, -1, 5);
    master_.RegisterValue(LinkTransaction{77}, 0, 5);
    EXPECT_EQ(master_.RegisterValue(once, 2), 0);
}

TEST_F(MbaxpTest, CarriesItsTag) {
    EXPECT_EQ(master_.Tag(), QString());
    master_.Tag(QStringLiteral("65"));
    EXPECT_EQ(master_.Tag(), QStringLiteral("65"));
}

} // namespace ztv

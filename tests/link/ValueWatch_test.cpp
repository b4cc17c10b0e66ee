#include "link/ValueWatch.h"

#include "link/LinkSession.h"
#include "model/LineTables.h"
#include "model/ParamDefines.h"
#include "shell/LinkNotices.h"
#include "tests/helpers/Frames.h"
#include "tests/helpers/ScriptedDialogs.h"
#include "tests/helpers/ScriptedLine.h"
#include "tests/helpers/TestPresets.h"
#include "tests/helpers/Wait.h"

#include <QElapsedTimer>
#include <QTemporaryDir>
#include <chrono>
#include <gtest/gtest.h>
#include <memory>
#include <ostream>
#include <vector>

namespace ztv {

using std::chrono::milliseconds;
using States = std::vector<ValueState>;

void PrintTo(ValueState state, std::ostream *out) {
    const char *const names[] = {"NeverRead", "Live", "Stale", "Held"};
    *out << names[static_cast<int>(state)];
}

namespace {

// The reply to the poll of a sensor in addressing mode 1: parameter N holds N.
QByteArray PollReply() {
    QByteArray reply = Hex("01 03 BE");
    for (int n = 1; n < 96; ++n) {
        reply.append('\0');
        reply.append(static_cast<char>(n));
    }
    return WithCrc(reply);
}

QByteArray Damaged(QByteArray reply) {
    reply[10] = static_cast<char>(reply[10] ^ 1);
    return reply;
}

} // namespace

// The watch alone. ----------------------------------------------------------------------------------

class ValueWatchTest : public testing::Test {
protected:
    ValueWatchTest() {
        QObject::connect(&watch_, &ValueWatch::Changed, [this](ValueState state) { told_.push_back(state); });
    }

    ValueWatch watch_;
    States told_;
};

TEST_F(ValueWatchTest, IsPatientForThreePeriodsButForASecondAtLeast) {
    const int expected[] = {4500, 2100, 1500, 1000, 1000};
    for (std::size_t baud = 0; baud < BaudTable.size(); ++baud) {
        EXPECT_EQ(ValueWatch::Patience(BaudTable[baud].pollPeriodMs), milliseconds(expected[baud])) << baud;
    }
}

TEST_F(ValueWatchTest, BeginsWithValuesThatNoSensorGave) {
    EXPECT_EQ(watch_.State(), ValueState::NeverRead);
    EXPECT_EQ(watch_.Age(), std::nullopt);
    watch_.Lost();
    EXPECT_EQ(watch_.State(), ValueState::NeverRead) << "going offline reads nothing";
    watch_.PollPeriod(200);
    EXPECT_TRUE(told_.empty());
}

TEST_F(ValueWatchTest, IsLiveFromAPollUntilPollsStayAway) {
    watch_.PollPeriod(200);
    watch_.Polled();
    EXPECT_EQ(told_, (States{ValueState::Live}));
    EXPECT_LT(watch_.Age(), milliseconds(100));
    EXPECT_TRUE(WaitUntil([this] { return watch_.State() != ValueState::Live; }));
    EXPECT_EQ(told_, (States{ValueState::Live, ValueState::Stale}));
    EXPECT_GE(watch_.Age(), milliseconds(1000));
    EXPECT_LT(watch_.Age(), milliseconds(1100));
}

TEST_F(ValueWatchTest, EachPollBeginsTheWaitAnewAndIsToldOnce) {
    watch_.PollPeriod(200);
    QElapsedTimer all;
    all.start();
    while (all.elapsed() < 1500) {
        watch_.Polled();
        QElapsedTimer one;
        one.start();
        EXPECT_TRUE(WaitUntil([&one] { return one.hasExpired(250); }));
    }
    EXPECT_EQ(told_, (States{ValueState::Live}));
}

TEST_F(ValueWatchTest, MeasuresTheTimeBetweenTwoPollsWhileTheValuesAreLive) {
    watch_.Polled();
    EXPECT_EQ(watch_.TimeBetweenPolls(), std::nullopt) << "there was one";
    QElapsedTimer time;
    time.start();
    EXPECT_TRUE(WaitUntil([&time] { return time.hasExpired(300); }));
    watch_.Polled();
    ASSERT_TRUE(watch_.TimeBetweenPolls());
    EXPECT_GE(*watch_.TimeBetweenPolls(), milliseconds(299));
    EXPECT_LE(*watch_.TimeBetweenPolls(), milliseconds(time.elapsed() + 1));
    watch_.Held();
    EXPECT_EQ(watch_.TimeBetweenPolls(), std::nullopt);
    watch_.Polled();
    EXPECT_EQ(watch_.TimeBetweenPolls(), std::nullopt) << "the values weren't live meanwhile";
    watch_.Polled();
    EXPECT_TRUE(watch_.TimeBetweenPolls());
    watch_.Lost();
    EXPECT_EQ(watch_.TimeBetweenPolls(), std::nullopt);
}

TEST_F(ValueWatchTest, ASlowerPollAppliesToTheWaitThatRuns) {
    watch_.PollPeriod(200);
    watch_.Polled();
    watch_.PollPeriod(400);
    EXPECT_TRUE(WaitUntil([this] { return watch_.State() != ValueState::Live; }));
    EXPECT_GE(watch_.Age(), milliseconds(1200));
    EXPECT_LT(watch_.Age(), milliseconds(1300));
}

TEST_F(ValueWatchTest, ALostPortMakesValuesStaleAtOnceAndAPollLiveAtOnce) {
    watch_.Polled();
    watch_.Lost();
    watch_.Polled();
    watch_.Held();
    watch_.Polled();
    EXPECT_EQ(told_, (States{ValueState::Live, ValueState::Stale, ValueState::Live, ValueState::Held,
                             ValueState::Live}));
}

TEST_F(ValueWatchTest, ValuesThatAreHeldStayHeldInSilence) {
    watch_.PollPeriod(200);
    watch_.Polled();
    watch_.Held();
    QElapsedTimer silence;
    silence.start();
    EXPECT_TRUE(WaitUntil([&silence] { return silence.hasExpired(1200); }));
    EXPECT_EQ(watch_.State(), ValueState::Held);
    EXPECT_GE(watch_.Age(), milliseconds(1200)) << "since the last poll that filled the table";
    watch_.Lost();
    EXPECT_EQ(watch_.State(), ValueState::Stale);
}

TEST_F(ValueWatchTest, TheValuesOfAFileAreNoSensors) {
    watch_.Polled();
    watch_.Loaded();
    EXPECT_EQ(watch_.State(), ValueState::NeverRead);
    EXPECT_EQ(watch_.Age(), std::nullopt);
    watch_.Held();
    watch_.Lost();
    EXPECT_EQ(watch_.State(), ValueState::NeverRead);
}

// The session's, on a line. -------------------------------------------------------------------------

class ValueStateTest : public testing::Test {
protected:
    ValueStateTest() {
        QObject::connect(&session_, &LinkSession::ValueStateChanged, [this](ValueState state) {
            EXPECT_EQ(state, session_.State());
            told_.push_back(state);
        });
        session_.SetMbaxp1CommProperties(1, 4, 1, 0);
    }

    void AnswerWell() {
        line_->Answer(WithCrc("01 03 02 00 46"));
        line_->AnswerAlways(PollReply());
    }
    void GoOnline() {
        AnswerWell();
        session_.GoOnline(ConnectPrompt::Skip);
        EXPECT_TRUE(Becomes(ValueState::Live));
        told_.clear();
    }
    bool Becomes(ValueState state) {
        return WaitUntil([this, state] { return session_.State() == state; });
    }
    void Wait(int span) {
        QElapsedTimer timer;
        timer.start();
        EXPECT_TRUE(WaitUntil([&] { return timer.hasExpired(span); }));
    }
    void PlugInAgain() {
        line_ = std::make_unique<ScriptedLine>();
        device_ = line_->Path();
    }

    ScriptedDialogs dialogs_;
    std::unique_ptr<ScriptedLine> line_ = std::make_unique<ScriptedLine>();
    QString device_ = line_->Path();
    ClassZentrova zentrova_{ShippedPresetsFolder()};
    LinkSession session_{zentrova_,
                         {.deviceOfPort = [this](std::int16_t) { return device_; },
                          .askDirection = [] { return ConnectChoice::Read; }}};
    LinkNotices notices_{session_, dialogs_};
    States told_;
};

TEST_F(ValueStateTest, AFreshStartHasNeverReadUntilThePollHasFilledTheTable) {
    EXPECT_EQ(session_.State(), ValueState::NeverRead);
    EXPECT_EQ(session_.AgeOfValues(), std::nullopt);
    std::int32_t distance = -1;
    QObject::connect(&session_, &LinkSession::ValueStateChanged,
                     [&] { distance = zentrova_.ParamValue(32); });
    AnswerWell();
    session_.GoOnline(ConnectPrompt::Skip);
    EXPECT_EQ(session_.State(), ValueState::NeverRead);
    EXPECT_TRUE(Becomes(ValueState::Live));
    EXPECT_EQ(distance, 32) << "the values are there as it is reported";
    EXPECT_LT(session_.AgeOfValues(), milliseconds(500));
    EXPECT_EQ(told_, (States{ValueState::Live}));
}

TEST_F(ValueStateTest, AWrongPortOrASilentSensorIsNeverRead) {
    device_ = QStringLiteral("/dev/there-is-no-such-port");
    dialogs_.ExpectTextWith(QStringLiteral("Error 47"), BoxIcon::Exclamation);
    session_.GoOnline(ConnectPrompt::Skip);
    device_ = line_->Path();
    line_->AnswerAlways({});
    session_.GoOnline(ConnectPrompt::Skip);
    EXPECT_TRUE(WaitUntil([this] { return line_->Requests().size() >= 3; }));
    session_.GoOffline();
    EXPECT_EQ(session_.State(), ValueState::NeverRead);
    EXPECT_TRUE(told_.empty());
}

TEST_F(ValueStateTest, SilenceMakesValuesStaleAndOneGoodPollLiveAgain) {
    for (const std::int16_t baud : {std::int16_t{4}, std::int16_t{2}}) {
        SCOPED_TRACE(baud);
        session_.BaudRate(baud);
        session_.SetMbaxp1CommProperties(1, baud, 1, 0);
        GoOnline();
        line_->AnswerAlways({});
        EXPECT_TRUE(Becomes(ValueState::Stale));
        const milliseconds patience = ValueWatch::Patience(BaudTable[baud].pollPeriodMs);
        EXPECT_GE(session_.AgeOfValues(), patience);
        EXPECT_LT(session_.AgeOfValues(), patience + milliseconds(100));
        EXPECT_TRUE(session_.PortIsOpen());
        line_->AnswerAlways(PollReply());
        EXPECT_TRUE(Becomes(ValueState::Live));
        EXPECT_LT(session_.AgeOfValues(), milliseconds(100));
        EXPECT_EQ(told_, (States{ValueState::Stale, ValueState::Live}));
        session_.GoOffline();
    }
}

TEST_F(ValueStateTest, DamagedRepliesOnABadLineDoNotFlicker) {
    GoOnline();
    for (int k = 0; k < 4; ++k) {
        line_->Answer(Damaged(PollReply()));
        line_->Answer(Damaged(PollReply()));
        line_->Answer(PollReply());
    }
    const std::size_t before = line_->Requests().size();
    EXPECT_TRUE(WaitUntil([&] { return line_->Requests().size() > before + 12; }));
    EXPECT_EQ(session_.CrcErrorCount(), 8);
    EXPECT_TRUE(told_.empty());
    line_->AnswerAlways(Damaged(PollReply()));
    EXPECT_TRUE(Becomes(ValueState::Stale));
}

TEST_F(ValueStateTest, APulledCableMakesValuesStaleAtOnceBetweenTwoPollsToo) {
    session_.BaudRate(0); // a round every 1.5 s
    session_.SetMbaxp1CommProperties(1, 0, 1, 0);
    GoOnline();
    QElapsedTimer sinceLost;
    sinceLost.start();
    line_->HangUp();
    EXPECT_TRUE(Becomes(ValueState::Stale));
    EXPECT_LT(sinceLost.elapsed(), 200);
    PlugInAgain();
    line_->AnswerAlways(PollReply());
    EXPECT_TRUE(Becomes(ValueState::Live));
    EXPECT_EQ(told_, (States{ValueState::Stale, ValueState::Live}));
}

TEST_F(ValueStateTest, GoingOfflineMakesValuesStaleAndTheirAgeGrows) {
    GoOnline();
    session_.GoOffline();
    EXPECT_EQ(told_, (States{ValueState::Stale}));
    const milliseconds age = session_.AgeOfValues().value_or(milliseconds(-1));
    Wait(300);
    EXPECT_GE(session_.AgeOfValues(), age + milliseconds(300));
    told_.clear();
    line_->AnswerNothing();
    AnswerWell();
    session_.GoOnline(ConnectPrompt::Skip);
    EXPECT_TRUE(WaitUntil([this] { return session_.State() == ValueState::Live; }));
    EXPECT_EQ(told_, (States{ValueState::Live})) << "not for the port alone";
}

TEST_F(ValueStateTest, ValuesThatAFileFaultKeepsOutAreHeldUntilThePortIsOpenedAnew) {
    GoOnline();
    zentrova_.WriteAllPending(true); // as a damaged file leaves it
    EXPECT_TRUE(Becomes(ValueState::Held));
    session_.GoOffline();
    GoOnline();
    EXPECT_EQ(session_.State(), ValueState::Live);
}

TEST_F(ValueStateTest, AnotherSensorsValuesAreHeld) {
    GoOnline();
    QByteArray other = Hex("01 03 BE") + QByteArray(190, '\0');
    other[3 + 2 * 69] = 0x55;
    other[4 + 2 * 69] = 0x55;
    line_->AnswerAlways(WithCrc(other));
    EXPECT_TRUE(Becomes(ValueState::Held));
    EXPECT_EQ(zentrova_.ParamValue(32), 32);
    line_->AnswerAlways(PollReply());
    EXPECT_TRUE(Becomes(ValueState::Live));
    EXPECT_EQ(told_, (States{ValueState::Held, ValueState::Live})) << "the sensor of before is back";
}

TEST_F(ValueStateTest, AFileThatIsOpenedOfflineIsNotWhatTheSensorMeasured) {
    const QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("a.ztv"));
    zentrova_.SaveFile(file);
    EXPECT_EQ(zentrova_.OpenFile(file).result, FileOpened::Whole);
    EXPECT_EQ(session_.State(), ValueState::NeverRead);
    GoOnline();
    session_.GoOffline();
    EXPECT_EQ(zentrova_.OpenFile(folder.filePath(QStringLiteral("none.ztv"))).result, FileOpened::Failed);
    EXPECT_EQ(session_.State(), ValueState::Stale) << "a file that isn't there replaces nothing";
    EXPECT_EQ(zentrova_.OpenFile(file).result, FileOpened::Whole);
    EXPECT_EQ(session_.State(), ValueState::NeverRead);
    EXPECT_EQ(session_.AgeOfValues(), std::nullopt);
}

TEST_F(ValueStateTest, AFileThatIsOpenedOnlineIsReadBackBeforeItsValuesAreLive) {
    const QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("a.ztv"));
    zentrova_.SaveFile(file);
    GoOnline();
    line_->Answer(WithCrc("01 10 00 00 00 5F")); // of the download
    dialogs_.ExpectNotice(QStringLiteral("Parameters downloaded successfully!"));
    EXPECT_EQ(zentrova_.OpenFile(file).result, FileOpened::Whole);
    EXPECT_EQ(session_.State(), ValueState::NeverRead);
    EXPECT_TRUE(Becomes(ValueState::Live));
    EXPECT_EQ(told_, (States{ValueState::NeverRead, ValueState::Live})) << "its own download holds nothing";
}

TEST_F(ValueStateTest, AReconnectThatFailsMakesValuesStaleAtOnce) {
    GoOnline();
    zentrova_.ParamUpdate(ParamDefines::BaudRateCode, 4);
    zentrova_.ParamUpdate(ParamDefines::ParityStopCode, 1);
    zentrova_.ParamUpdate(ParamDefines::NetworkAddress, 1);
    session_.Mbaxp1().Tag(QString::number(ParamDefines::NetworkAddress));
    session_.TransactionDone(LinkTransaction::SingleWrite);
    EXPECT_EQ(session_.State(), ValueState::Live) << "a reconnect alone changes nothing";
    device_ = QStringLiteral("/dev/there-is-no-such-port");
    session_.TransactionDone(LinkTransaction::SingleWrite);
    EXPECT_EQ(told_, (States{ValueState::Stale}));
}

} // namespace ztv

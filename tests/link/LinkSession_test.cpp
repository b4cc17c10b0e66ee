#include "link/LinkSession.h"

#include "model/ParamDefines.h"
#include "shell/LinkNotices.h"
#include "support/Fault.h"
#include "tests/helpers/Frames.h"
#include "tests/helpers/Printers.h"
#include "tests/helpers/ScriptedDialogs.h"
#include "tests/helpers/ScriptedLine.h"
#include "tests/helpers/TestPresets.h"
#include "tests/helpers/Wait.h"

#include <QFile>
#include <algorithm>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace ztv {

namespace {

constexpr int parameterCount = 96;

// The reply to the poll of a sensor in addressing mode 1: parameter N holds N.
QByteArray PollReply() {
    QByteArray reply = Hex("01 03 BE");
    for (int n = 1; n < parameterCount; ++n) {
        reply.append(static_cast<char>(n >> 8));
        reply.append(static_cast<char>(n & 0xFF));
    }
    return WithCrc(reply);
}

} // namespace

// Runs the session on a scripted line. Records all of its signals in one list, so that tests can compare
// their order.
class LinkSessionTest : public testing::Test {
protected:
    LinkSessionTest() {
        QObject::connect(&session_, &LinkSession::StatusChanged,
                         [this](const QString &text) { Note("status " + text.toStdString()); });
        QObject::connect(&session_, &LinkSession::OnlineChanged,
                         [this](bool online) { Note(online ? "online" : "offline"); });
        QObject::connect(&session_, &LinkSession::FirstReadComplete, [this] { Note("first read"); });
        QObject::connect(&session_, &LinkSession::DeviceAnswered,
                         [this](LinkStatus status) { Note("device " + std::to_string(CodeOf(status))); });
        QObject::connect(&session_, &LinkSession::TableRefreshed, [this] { Note("refresh"); });
        session_.SetMbaxp1CommProperties(1, 4, 1, 0);
    }

    // Online, with a probe on the line that gets no answer.
    void StartProbing() {
        line_.AnswerNothing();
        session_.GoOnline(ConnectPrompt::Skip);
        EXPECT_TRUE(WaitUntil([this] { return line_.Requests().size() == 1; }));
    }

    void Note(const std::string &what) { told_.push_back(what); }
    bool WasTold(const std::string &what) const {
        return std::find(told_.begin(), told_.end(), what) != told_.end();
    }

    // Begins a single write as the table does, without a line: fills the mailbox and marks the row.
    void PretendWritten(std::int16_t tag, std::int32_t value) {
        zentrova_.ParamValue(tag, value);
        zentrova_.ParamWritePending(tag, true);
        session_.Mbaxp1().Tag(QString::number(tag));
    }

    ConnectChoice choice_ = ConnectChoice::Read;
    ScriptedDialogs dialogs_;
    ScriptedLine line_;
    QString device_ = line_.Path();
    ClassZentrova zentrova_{ShippedPresetsFolder()};
    LinkSession session_{zentrova_,
                         {.deviceOfPort = [this](std::int16_t) { return device_; },
                          .askDirection =
                              [this] {
                                  Note("asked");
                                  return choice_;
                              }}};
    LinkNotices notices_{session_, dialogs_};
    std::vector<std::string> told_;
};

using Told = std::vector<std::string>;
const std::string good = "status Communication Status:  Online";
const std::string anotherSensor = "status Communication Status: Another sensor: go offline and online";

struct CommCase {
    int baud, baudCode, timeout;
};

TEST_F(LinkSessionTest, SetsTheLineByTheTables) {
    for (const auto &row : {CommCase{0, 3, 1200}, CommCase{1, 4, 600}, CommCase{2, 5, 350},
                            CommCase{3, 7, 200}, CommCase{4, 8, 100}}) {
        session_.SetMbaxp1CommProperties(9, static_cast<std::int16_t>(row.baud), 0, 0);
        EXPECT_EQ(session_.Mbaxp1().PortNumber(), 9);
        EXPECT_EQ(session_.Mbaxp1().BaudCode(), row.baudCode);
        EXPECT_EQ(session_.Mbaxp1().ResponseTimeout(), row.timeout);
    }
    const int parities[][3] = {{0, 0, 0}, {1, 0, 1}, {2, 2, 0}, {3, 1, 0}, {4, 1, 0}, {-1, 1, 0}};
    for (const auto &row : parities) {
        session_.SetMbaxp1CommProperties(1, 4, static_cast<std::int16_t>(row[0]), 0);
        EXPECT_EQ(session_.Mbaxp1().ParityCode(), row[1]) << row[0];
        EXPECT_EQ(session_.Mbaxp1().StopBitsCode(), row[2]) << row[0];
    }
}

TEST_F(LinkSessionTest, TakesTheTimeoutGivenAndFaultsOnABaudIndexThatHasNone) {
    session_.SetMbaxp1CommProperties(1, 4, 0, 30);
    EXPECT_EQ(session_.Mbaxp1().ResponseTimeout(), 30);
    session_.SetMbaxp1CommProperties(1, 9, 0, 30);
    EXPECT_EQ(session_.Mbaxp1().BaudCode(), 8);
    EXPECT_THROW(session_.SetMbaxp1CommProperties(1, 5, 0, 0), Fault);
    EXPECT_THROW(session_.SetMbaxp1CommProperties(1, -1, 0, 0), Fault);
}

// Going online and offline. -------------------------------------------------------------------------

TEST_F(LinkSessionTest, CancelLeavesTheLinkUntouched) {
    choice_ = ConnectChoice::Cancel;
    session_.GoOnline(ConnectPrompt::Ask);
    EXPECT_EQ(told_, (Told{"asked"}));
    EXPECT_FALSE(session_.PortIsOpen());
}

TEST_F(LinkSessionTest, AnyOtherChoiceCountsAsCancel) {
    choice_ = ConnectChoice{7};
    session_.GoOnline(ConnectPrompt::Ask);
    EXPECT_FALSE(session_.PortIsOpen());
}

TEST_F(LinkSessionTest, ProbesRegister69EachHalfSecondUntilItIsAnswered) {
    line_.AnswerNothing();
    line_.Answer(WithCrc("01 83 02"));
    line_.Answer(WithCrc("01 03 02 55 55"));
    session_.GoOnline(ConnectPrompt::Skip);
    EXPECT_EQ(told_, (Told{"online"})); // no question about the direction
    EXPECT_TRUE(WaitUntil([this] { return line_.Requests().size() >= 4; }));
    for (std::size_t k = 0; k < 3; ++k) {
        EXPECT_EQ(line_.Requests()[k], WithCrc("01 03 00 45 00 01"));
    }
    EXPECT_GE(line_.Times()[1] - line_.Times()[0],
              std::chrono::milliseconds(450)); // less what delayed the first
    EXPECT_EQ(line_.Requests()[3], WithCrc("01 03 00 00 00 5F"));
    EXPECT_EQ(session_.AddressingMode(), 0);
    EXPECT_EQ(told_, (Told{"online", "status Communication Status: Timeout",
                           "status Communication Status: Illegal Data Address", good, "refresh"}));
    EXPECT_EQ(session_.TimeoutCount(), 0); // a probe's timeout isn't counted
    EXPECT_FALSE(session_.Mbaxp1().TransactionBusy(LinkTransaction::AddressingProbe));
    EXPECT_TRUE(session_.Mbaxp1().TransactionBusy(LinkTransaction::Poll));
}

TEST_F(LinkSessionTest, PollsIntoTheTableAndTellsOfTheFirstReadOnce) {
    line_.Answer(WithCrc("01 03 02 00 46"));
    line_.AnswerAlways(PollReply());
    session_.GoOnline(ConnectPrompt::Ask);
    EXPECT_TRUE(WaitUntil([this] { return std::count(told_.begin(), told_.end(), "refresh") >= 3; }));
    EXPECT_EQ(told_,
              (Told{"asked", "online", good, "refresh", good, "first read", "refresh", good, "refresh"}));
    EXPECT_EQ(session_.AddressingMode(), 1);
    for (std::int16_t n = 1; n < parameterCount; ++n) {
        EXPECT_EQ(zentrova_.ParamValue(n), n);
    }
    EXPECT_FALSE(zentrova_.FileChangesNeedSaving());
}

TEST_F(LinkSessionTest, TellsWhyThePortCannotBeOpened) {
    device_ = QStringLiteral("/dev/there-is-no-such-port");
    dialogs_.ExpectNotice(
        QStringLiteral("Error 47. The com port could not be opened.  The port does not exist or is "
                       "in use by another application."));
    session_.GoOnline(ConnectPrompt::Ask);
    EXPECT_EQ(told_, (Told{"asked"}));
    EXPECT_FALSE(session_.PortIsOpen());
}

TEST_F(LinkSessionTest, GoingOfflineClosesThePortThenTheControlsThenTheStatus) {
    session_.GoOnline(ConnectPrompt::Skip);
    told_.clear();
    session_.GoOffline();
    EXPECT_EQ(told_, (Told{"offline", "status Communication Status: Offline"}));
    EXPECT_FALSE(session_.PortIsOpen());
}

TEST_F(LinkSessionTest, GoingOfflineInTheMiddleOfADownloadLeavesItsMarks) {
    choice_ = ConnectChoice::Write;
    line_.Answer(WithCrc("01 03 02 00 46"));
    session_.GoOnline(ConnectPrompt::Ask);
    EXPECT_TRUE(WaitUntil([this] { return line_.Requests().size() >= 2; }));
    session_.GoOffline();
    EXPECT_TRUE(zentrova_.WriteAllPending());
}

// The poll. -----------------------------------------------------------------------------------------

TEST_F(LinkSessionTest, CountsTimeoutsAndCrcErrorsOfThePollAlone) {
    for (const int status : {10, 10, 11, 2, 12, 13, 15}) {
        session_.TransactionFailed(LinkTransaction::Poll, static_cast<LinkStatus>(status));
    }
    for (const int status : {10, 11}) {
        session_.TransactionFailed(LinkTransaction::AddressingProbe, static_cast<LinkStatus>(status));
    }
    EXPECT_EQ(session_.TimeoutCount(), 2);
    EXPECT_EQ(session_.CrcErrorCount(), 1);
    EXPECT_FALSE(WasTold("refresh")); // a failure refreshes nothing
}

TEST_F(LinkSessionTest, CountingPast32767IsAnOverflowFault) {
    session_.TimeoutCount(32767);
    session_.CrcErrorCount(32767);
    EXPECT_THROW(session_.TransactionFailed(LinkTransaction::Poll, LinkStatus::Timeout), Fault);
    EXPECT_THROW(session_.TransactionFailed(LinkTransaction::Poll, LinkStatus::CrcError), Fault);
}

TEST_F(LinkSessionTest, ShowsTheWordsOfEachFailure) {
    session_.TransactionFailed(LinkTransaction::Poll, LinkStatus::CrcError);
    session_.TransactionFailed(LinkTransaction::Poll, LinkStatus::ReadError);
    session_.TransactionFailed(LinkTransaction{7}, LinkStatus{99});
    EXPECT_EQ(told_, (Told{"status Communication Status: CRC Error",
                           "status Communication Status: Read Error", "status Communication Status: "}));
}

TEST_F(LinkSessionTest, RefreshesAlsoAfterANumberThatHasNoUse) {
    session_.TransactionDone(LinkTransaction{7});
    session_.TransactionDone(LinkTransaction{-1});
    EXPECT_EQ(told_, (Told{good, "refresh", good, "refresh"}));
}

TEST_F(LinkSessionTest, TellsTheSearchOfItsProbe) {
    session_.TransactionDone(LinkTransaction::SearchProbe);
    session_.TransactionFailed(LinkTransaction::SearchProbe, LinkStatus::Timeout);
    EXPECT_EQ(told_,
              (Told{good, "device 0", "refresh", "status Communication Status: Timeout", "device 10"}));
}

TEST_F(LinkSessionTest, ThrowsThePollAwayWhileADownloadIsPending) {
    const std::int32_t before = zentrova_.ParamValue(40);
    session_.Mbaxp1().DefineReadRegisters(LinkTransaction::Poll, 1, 0, 95, 200);
    session_.Mbaxp1().RegisterValue(LinkTransaction::Poll, 40, 1234);
    zentrova_.WriteAllPending(true);
    session_.TransactionDone(LinkTransaction::Poll);
    EXPECT_EQ(zentrova_.ParamValue(40), before);
    zentrova_.WriteAllPending(false);
    session_.TransactionDone(LinkTransaction::Poll); // the addressing mode is 0 before any connection
    EXPECT_EQ(zentrova_.ParamValue(40), 1234);
}

TEST_F(LinkSessionTest, KeepsARowWithAPendingWriteFromThePoll) {
    const std::int32_t before = zentrova_.ParamValue(40);
    session_.Mbaxp1().DefineReadRegisters(LinkTransaction::Poll, 1, 0, 95, 200);
    session_.Mbaxp1().RegisterValue(LinkTransaction::Poll, 40, 1234);
    zentrova_.ParamWritePending(40, true);
    session_.TransactionDone(LinkTransaction::Poll);
    EXPECT_EQ(zentrova_.ParamValue(40), before);
}

TEST_F(LinkSessionTest, ReadsWordsAsTheirRowsAreSigned) {
    std::int16_t signedRow = 1;
    while (!zentrova_.ParamSigned(signedRow)) {
        ++signedRow;
    }
    session_.Mbaxp1().DefineReadRegisters(LinkTransaction::Poll, 1, 0, 95, 200);
    session_.Mbaxp1().RegisterValue(LinkTransaction::Poll, signedRow, -2);
    session_.Mbaxp1().RegisterValue(LinkTransaction::Poll, ParamDefines::TransmitDelayLow, -2);
    session_.TransactionDone(LinkTransaction::Poll);
    EXPECT_EQ(zentrova_.ParamValue(signedRow), -2);
    EXPECT_EQ(zentrova_.ParamValue(ParamDefines::TransmitDelayLow), 65534);
}

TEST_F(LinkSessionTest, LeavesParameter0AsItIs) {
    zentrova_.ParamUpdate(0, 77);
    session_.Mbaxp1().DefineReadRegisters(LinkTransaction::Poll, 1, 0, 95, 200);
    session_.TransactionDone(LinkTransaction::Poll);
    EXPECT_EQ(zentrova_.ParamValue(0), 77);
}

TEST_F(LinkSessionTest, GivesTheLastRow0InAddressingMode0) {
    zentrova_.ParamUpdate(95, 77);
    session_.Mbaxp1().DefineReadRegisters(LinkTransaction::Poll, 1, 0, 95,
                                          200); // its word would be one past the buffer's end
    session_.TransactionDone(LinkTransaction::Poll);
    EXPECT_EQ(zentrova_.ParamValue(95), 0);
}

// Another sensor on the same port. ------------------------------------------------------------------

TEST_F(LinkSessionTest, ThePollOfASensorThatNumbersItsRegistersOtherwiseIsNotTaken) {
    struct Row {
        const char *probeReply;
        std::int16_t markOfTheOther;
        std::int16_t markOfItsOwn;
    };
    for (const Row &row : {Row{"01 03 02 00 46", 0x5555, 70}, Row{"01 03 02 55 55", 70, 0x5555}}) {
        SCOPED_TRACE(row.probeReply);
        line_.Answer(WithCrc(row.probeReply));
        session_.GoOnline(ConnectPrompt::Skip);
        EXPECT_TRUE(WaitUntil([this] { return session_.Mbaxp1().TransactionBusy(LinkTransaction::Poll); }));
        Mbaxp &master = session_.Mbaxp1();
        master.StopCyclic(LinkTransaction::Poll);
        zentrova_.ParamUpdate(40, 77);
        told_.clear();
        master.RegisterValue(LinkTransaction::Poll, 40 - session_.AddressingMode(), 1234);
        master.RegisterValue(LinkTransaction::Poll, 69, row.markOfTheOther);
        session_.TransactionDone(LinkTransaction::Poll);
        EXPECT_EQ(zentrova_.ParamValue(40), 77);
        EXPECT_EQ(told_, (Told{good, anotherSensor, "refresh"})) << "no first read either";
        master.RegisterValue(LinkTransaction::Poll, 69, row.markOfItsOwn);
        told_.clear();
        session_.TransactionDone(LinkTransaction::Poll);
        EXPECT_EQ(zentrova_.ParamValue(40), 1234) << "the sensor of before is back";
        EXPECT_EQ(told_, (Told{good, "first read", "refresh"}));
        session_.GoOffline();
    }
}

TEST_F(LinkSessionTest, NothingIsWrittenToAnotherSensor) {
    line_.Answer(WithCrc("01 03 02 55 55"));
    session_.GoOnline(ConnectPrompt::Skip);
    EXPECT_TRUE(WaitUntil([this] { return session_.Mbaxp1().TransactionBusy(LinkTransaction::Poll); }));
    session_.Mbaxp1().StopCyclic(LinkTransaction::Poll);
    session_.TransactionDone(LinkTransaction::Poll); // without the mark
    const std::size_t before = line_.Requests().size();
    told_.clear();
    dialogs_.ExpectNotice(QStringLiteral("Error writing parameter"));
    zentrova_.ParamValue(ParamDefines::NearDistance, 1500);
    EXPECT_TRUE(WaitUntil([this] { return dialogs_.AllCame(); }));
    EXPECT_FALSE(zentrova_.ParamWritePending(ParamDefines::NearDistance));
    EXPECT_EQ(told_, (Told{anotherSensor}));
    dialogs_.ExpectNotice(QStringLiteral("Error downloading Parameters"));
    zentrova_.WriteAllPending(true);
    session_.DefineDownload();
    session_.StartDownload();
    EXPECT_TRUE(WaitUntil([this] { return dialogs_.AllCame(); }));
    EXPECT_FALSE(zentrova_.WriteAllPending());
    EXPECT_EQ(line_.Requests().size(), before);
    // The remedy that the status bar names.
    session_.GoOffline();
    line_.Answer(WithCrc("01 03 02 00 46"));
    line_.AnswerAlways(PollReply());
    told_.clear();
    session_.GoOnline(ConnectPrompt::Skip);
    EXPECT_TRUE(WaitUntil([this] { return WasTold("first read"); }));
    EXPECT_EQ(zentrova_.ParamValue(40), 40);
}

TEST_F(LinkSessionTest, ThePollFollowsAnAddressingModeThatTheUserWrites) {
    line_.Answer(WithCrc("01 03 02 55 55"));
    session_.GoOnline(ConnectPrompt::Skip);
    EXPECT_TRUE(WaitUntil([this] { return session_.Mbaxp1().TransactionBusy(LinkTransaction::Poll); }));
    session_.Mbaxp1().StopCyclic(LinkTransaction::Poll);
    zentrova_.ParamUpdate(ParamDefines::AddressingMode, 1);
    session_.Mbaxp1().Tag(QStringLiteral("68"));
    session_.TransactionDone(LinkTransaction::SingleWrite);
    told_.clear();
    session_.TransactionDone(LinkTransaction::Poll); // no mark there, which is correct in mode 1
    EXPECT_FALSE(WasTold(anotherSensor));
}

// Values that stand still. --------------------------------------------------------------------------

TEST_F(LinkSessionTest, MarksThatAClosedPortHasLeftAreClearedAsTheNextConnectBegins) {
    StartProbing();
    zentrova_.ParamValue(40, 2000);
    zentrova_.WriteAllPending(true);
    session_.GoOffline();
    EXPECT_TRUE(zentrova_.ParamWritePending(40));
    EXPECT_TRUE(zentrova_.WriteAllPending());
    line_.Answer(WithCrc("01 03 02 00 46"));
    line_.AnswerAlways(PollReply());
    session_.GoOnline(ConnectPrompt::Skip);
    EXPECT_FALSE(zentrova_.ParamWritePending(40));
    EXPECT_FALSE(zentrova_.WriteAllPending());
    EXPECT_TRUE(WaitUntil([this] { return WasTold("first read"); }));
    EXPECT_EQ(zentrova_.ParamValue(40), 40);
}

TEST_F(LinkSessionTest, AConnectThatFailsLeavesTheMarks) {
    zentrova_.WriteAllPending(true);
    device_ = QStringLiteral("/dev/there-is-no-such-port");
    dialogs_.ExpectTextWith(QStringLiteral("Error 47"), BoxIcon::Exclamation);
    session_.GoOnline(ConnectPrompt::Skip);
    EXPECT_TRUE(zentrova_.WriteAllPending());
}

TEST_F(LinkSessionTest, ADownloadThatAReconnectHasEndedHoldsNoValuesBack) {
    session_.GoOnline(ConnectPrompt::Skip);
    zentrova_.WriteAllPending(true);
    zentrova_.ParamUpdate(ParamDefines::NetworkAddress, 1);
    session_.Mbaxp1().Tag(QString::number(ParamDefines::NetworkAddress));
    session_.TransactionDone(LinkTransaction::SingleWrite);
    EXPECT_FALSE(zentrova_.WriteAllPending());
}

TEST_F(LinkSessionTest, SaysWhyNoValuesAreReadAfterAFileThatFailed) {
    line_.Answer(WithCrc("01 03 02 00 46"));
    line_.AnswerAlways(PollReply());
    session_.GoOnline(ConnectPrompt::Skip);
    EXPECT_TRUE(WaitUntil([this] { return WasTold("first read"); }));
    zentrova_.WriteAllPending(true); // as a damaged file leaves it
    told_.clear();
    EXPECT_TRUE(WaitUntil([this] { return WasTold("refresh"); }));
    EXPECT_EQ(told_, (Told{good,
                           "status Communication Status: Values aren't read since a file couldn't be opened: "
                           "go offline and online",
                           "refresh"}));
}

TEST_F(LinkSessionTest, KnowsNoValuesOfTheSensorOnceAFileMayHaveReplacedThem) {
    line_.Answer(WithCrc("01 03 02 00 46"));
    line_.AnswerAlways(PollReply());
    session_.GoOnline(ConnectPrompt::Skip);
    const auto poll = [this] {
        told_.clear();
        EXPECT_TRUE(WaitUntil([this] { return WasTold("refresh"); }));
    };
    poll();
    poll();
    EXPECT_TRUE(session_.Sensor().IsCurrent());
    zentrova_.WriteAllPending(true); // as a damaged file leaves it
    poll();
    EXPECT_FALSE(session_.Sensor().IsCurrent());
    zentrova_.WriteAllPending(false);
    poll();
    EXPECT_TRUE(session_.Sensor().IsCurrent());
    session_.StartDownload();
    EXPECT_FALSE(session_.Sensor().IsCurrent()); // also after its end, whichever that is, until a poll
    session_.GoOffline();
}

TEST_F(LinkSessionTest, AnotherSensorsAnswerEndsTheKnowledgeOfTheFirstOnes) {
    line_.Answer(WithCrc("01 03 02 00 46"));
    line_.Answer(PollReply());
    line_.AnswerAlways(WithCrc("01 83 02"));
    session_.GoOnline(ConnectPrompt::Skip);
    EXPECT_TRUE(WaitUntil([this] { return WasTold("first read"); }));
    EXPECT_TRUE(session_.Sensor().IsCurrent());
    session_.Mbaxp1().RegisterValue(LinkTransaction::Poll, ParamDefines::AddressingMark, 0x5555);
    session_.TransactionDone(LinkTransaction::Poll);
    EXPECT_TRUE(session_.AnotherSensorAnswers());
    EXPECT_FALSE(session_.Sensor().IsCurrent());
}

TEST_F(LinkSessionTest, SaysNothingOfValuesThatADownloadOnTheWayHoldsBack) {
    session_.GoOnline(ConnectPrompt::Skip);
    session_.Mbaxp1().DefineReadRegisters(LinkTransaction::Poll, 1, 0, 95, 200);
    zentrova_.WriteAllPending(true);
    session_.DefineDownload();
    session_.StartDownload();
    told_.clear();
    session_.TransactionDone(LinkTransaction::Poll);
    EXPECT_EQ(told_, (Told{good, "first read", "refresh"}));
}

// Single writes. ------------------------------------------------------------------------------------

TEST_F(LinkSessionTest, WritesUnderTheAddressingModeThatStandsAndClearsTheMark) {
    StartProbing(); // the mode is still 0
    line_.Answer(WithCrc("01 06 00 28 07 D0"));
    zentrova_.ParamValue(40, 2000);
    EXPECT_TRUE(zentrova_.ParamWritePending(40));
    EXPECT_EQ(session_.Mbaxp1().Tag(), QStringLiteral("40"));
    EXPECT_TRUE(WaitUntil([this] { return !zentrova_.ParamWritePending(40); }));
    EXPECT_EQ(line_.Requests()[1], WithCrc("01 06 00 28 07 D0"));
    EXPECT_EQ(zentrova_.ParamValue(40), 2000);
}

TEST_F(LinkSessionTest, SendsOneWriteAtATimeInTheirOrder) {
    StartProbing();
    line_.Answer({{WithCrc("01 06 00 1C 05 DC"), 20}});
    line_.Answer({{WithCrc("01 06 00 1D 0B B8"), 20}});
    zentrova_.ParamValue(28, 1500);
    zentrova_.ParamValue(29, 3000); // waits for the one before
    EXPECT_TRUE(zentrova_.ParamWritePending(28));
    EXPECT_FALSE(zentrova_.ParamWritePending(29));
    EXPECT_TRUE(WaitUntil([this] { return !zentrova_.WritesWait() && !zentrova_.ParamWritePending(29); }));
    EXPECT_FALSE(zentrova_.ParamWritePending(28));
    EXPECT_EQ(line_.Requests()[1], WithCrc("01 06 00 1C 05 DC"));
    EXPECT_EQ(line_.Requests()[2], WithCrc("01 06 00 1D 0B B8"));
}

TEST_F(LinkSessionTest, AnnouncesAWriteBeforeItsBytesAndNoneThatIsRejected) {
    StartProbing();
    session_.Mbaxp1().StopCyclic(LinkTransaction::AddressingProbe);
    std::vector<std::size_t> requests;
    const auto count = [&] { requests.push_back(line_.Requests().size()); };
    const auto connection = QObject::connect(&session_, &LinkSession::AboutToWrite, count);
    line_.Answer(WithCrc("01 06 00 1C 05 DC"));
    zentrova_.ParamValue(28, 1500);
    EXPECT_EQ(requests, std::vector<std::size_t>{1}); // the probe alone
    EXPECT_TRUE(WaitUntil([this] { return !zentrova_.ParamWritePending(28); }));
    session_.ModbusAddress(300); // no slave has it
    dialogs_.ExpectNotice(QStringLiteral("Error writing parameter"));
    zentrova_.ParamValue(28, 1600);
    EXPECT_TRUE(WaitUntil([this] { return dialogs_.AllCame(); }));
    EXPECT_EQ(requests.size(), 1U);
    QObject::disconnect(connection);
}

TEST_F(LinkSessionTest, MarksTheRowOfAFailedWriteBeforeItsBoxAndUntilThePollThatBringsIt) {
    StartProbing();
    session_.Mbaxp1().StopCyclic(LinkTransaction::AddressingProbe);
    std::int16_t marked = 0;
    const auto connection = QObject::connect(&session_, &LinkSession::WriteFailureMarked,
                                             [&](std::int16_t tag) { marked = tag; });
    dialogs_.ExpectNotice(QStringLiteral("Error writing parameter"), BoxIcon::Exclamation, ApplicationTitle(),
                          [&] {
                              EXPECT_EQ(marked, 28);
                              EXPECT_TRUE(zentrova_.ParamWriteFailed(28));
                          });
    zentrova_.ParamValue(28, 1500);
    EXPECT_TRUE(WaitUntil([this] { return dialogs_.AllCame(); }));
    EXPECT_TRUE(zentrova_.ParamWriteFailed(28));
    session_.TransactionDone(LinkTransaction::Poll);
    EXPECT_FALSE(zentrova_.ParamWriteFailed(28));
    QObject::disconnect(connection);
}

// A box is closed before the next write goes out, so that no two of them are open at once.
TEST_F(LinkSessionTest, ShowsTheFailuresOfWaitingWritesOneAfterAnother) {
    StartProbing();
    session_.Mbaxp1().StopCyclic(LinkTransaction::AddressingProbe);
    int open = 0;
    for (int box = 0; box < 3; ++box) {
        dialogs_.ExpectNotice(QStringLiteral("Error writing parameter"), BoxIcon::Exclamation,
                              ApplicationTitle(), [&] {
                                  EXPECT_EQ(++open, 1);
                                  const std::size_t before = line_.Requests().size();
                                  Settle();
                                  EXPECT_EQ(line_.Requests().size(), before);
                                  --open;
                              });
    }
    zentrova_.ParamValue(28, 1500);
    zentrova_.ParamValue(29, 30000);
    zentrova_.ParamValue(28, 1600);
    EXPECT_TRUE(WaitUntil([this] { return dialogs_.AllCame(); }, 10'000));
    ASSERT_EQ(line_.Requests().size(), 4U);
    EXPECT_EQ(line_.Requests()[1], WithCrc("01 06 00 1C 05 DC"));
    EXPECT_EQ(line_.Requests()[2], WithCrc("01 06 00 1D 75 30"));
    EXPECT_EQ(line_.Requests()[3], WithCrc("01 06 00 1C 06 40"));
}

TEST_F(LinkSessionTest, ShowsTheRejectionsOfWaitingWritesOneAfterAnother) {
    StartProbing();
    session_.Mbaxp1().StopCyclic(LinkTransaction::AddressingProbe);
    session_.ModbusAddress(300); // no slave has it
    int open = 0;
    for (int box = 0; box < 3; ++box) {
        dialogs_.ExpectNotice(QStringLiteral("Error writing parameter"), BoxIcon::Exclamation,
                              ApplicationTitle(), [&] {
                                  EXPECT_EQ(++open, 1);
                                  Settle();
                                  --open;
                              });
    }
    for (const std::int16_t tag :
         {ParamDefines::NearDistance, ParamDefines::FarDistance, ParamDefines::MaxRange}) {
        zentrova_.ParamValue(tag, 15000);
    }
    EXPECT_TRUE(WaitUntil([this] { return dialogs_.AllCame(); }));
    EXPECT_EQ(line_.Requests().size(), 1U);
}

// Such as the marker of a threshold, which loses the focus to the box.
TEST_F(LinkSessionTest, SendsNothingBehindTheBoxOfAFailure) {
    StartProbing();
    session_.Mbaxp1().StopCyclic(LinkTransaction::AddressingProbe);
    dialogs_.ExpectNotice(QStringLiteral("Error writing parameter"), BoxIcon::Exclamation, ApplicationTitle(),
                          [this] {
                              Settle();
                              zentrova_.ParamValue(29, 30000);
                              Settle();
                              EXPECT_EQ(line_.Requests().size(), 2U);
                          });
    dialogs_.ExpectNotice(QStringLiteral("Error writing parameter"));
    zentrova_.ParamValue(28, 1500);
    EXPECT_TRUE(WaitUntil([this] { return dialogs_.AllCame(); }));
    ASSERT_EQ(line_.Requests().size(), 3U);
    EXPECT_EQ(line_.Requests()[2], WithCrc("01 06 00 1D 75 30"));
}

TEST_F(LinkSessionTest, RejectsNothingBehindTheBoxOfARejection) {
    StartProbing();
    session_.Mbaxp1().StopCyclic(LinkTransaction::AddressingProbe);
    session_.ModbusAddress(300); // no slave has it
    int open = 0;
    const auto notice = [&](const std::function<void()> &whileOpen) {
        dialogs_.ExpectNotice(QStringLiteral("Error writing parameter"), BoxIcon::Exclamation,
                              ApplicationTitle(), [&open, whileOpen] {
                                  EXPECT_EQ(++open, 1);
                                  whileOpen();
                                  --open;
                              });
    };
    notice([this] {
        zentrova_.ParamValue(29, 30000);
        Settle();
    });
    notice([] {});
    zentrova_.ParamValue(28, 1500);
    EXPECT_TRUE(WaitUntil([this] { return dialogs_.AllCame(); }));
}

// The reconnect after a download ends the write on the line without an event.
TEST_F(LinkSessionTest, SendsWhatWaitsThoughAReconnectEndsTheWriteOnTheLine) {
    StartProbing();
    session_.Mbaxp1().StopCyclic(LinkTransaction::AddressingProbe);
    line_.Answer(WithCrc("01 10 00 01 00 5F"));
    line_.AnswerNothing(); // to the write of 28
    line_.AnswerAlways(WithCrc("01 06 00 1C 75 30"));
    dialogs_.ExpectNotice(
        QStringLiteral("Parameters downloaded successfully!"), BoxIcon::Exclamation, ApplicationTitle(),
        [this] { EXPECT_TRUE(WaitUntil([this] { return line_.Requests().size() == 3; })); });
    zentrova_.WriteAllPending(true);
    session_.DefineDownload();
    for (std::int16_t tag = 1; tag < zentrova_.ParamCount(); ++tag) {
        session_.DownloadValue(tag, zentrova_.ValueToDownload(tag));
    }
    session_.StartDownload();
    zentrova_.ParamValue(28, 1500);
    zentrova_.ParamValue(29, 30000);
    bool sent = false;
    zentrova_.WhenWritesAreSent([&sent] { sent = true; });
    EXPECT_TRUE(WaitUntil([&sent] { return sent; }));
    const QByteArray waiting = WithCrc("01 06 00 1C 75 30"); // in the addressing mode of the table
    EXPECT_TRUE(WaitUntil([&] { return std::ranges::count(line_.Requests(), waiting) == 1; }));
    session_.GoOffline();
}

TEST_F(LinkSessionTest, SendsWhatWaitsToTheAddressThatTheWriteBeforeHasSet) {
    StartProbing();
    line_.AnswerAlways(
        WithCrc("01 06 00 41 00 07")); // the addressing mode is 0 until a sensor says otherwise
    zentrova_.ParamValue(ParamDefines::NetworkAddress, 7);
    zentrova_.ParamValue(28, 1500);
    const QByteArray write = WithCrc("07 06 00 1C 05 DC");
    EXPECT_TRUE(WaitUntil([&] { return std::ranges::count(line_.Requests(), write) == 1; }, 5000));
    EXPECT_EQ(session_.ModbusAddress(), 7);
}

// The sensor has taken the baud rate alone, so the master must not yet use the parity that waits.
TEST_F(LinkSessionTest, FollowsTheSensorByTheValuesThatWereSent) {
    StartProbing();
    line_.AnswerAlways(WithCrc("01 06 00 42 00 03"));
    zentrova_.ParamValue(ParamDefines::BaudRateCode, 3);
    zentrova_.ParamValue(ParamDefines::ParityStopCode, 2);
    zentrova_.ParamValue(ParamDefines::ParityStopCode, 3);
    EXPECT_TRUE(WaitUntil([this] { return session_.BaudRate() == 3; }));
    EXPECT_EQ(session_.ParityStop(), 1);
    EXPECT_EQ(zentrova_.ParamValue(ParamDefines::ParityStopCode), 3);
}

TEST_F(LinkSessionTest, GoesOfflineOnlyForTheCommandThatWasSent) {
    zentrova_.ParamUpdate(ParamDefines::ReinitCommand, ParamDefines::FactoryDefaults);
    StartProbing();
    line_.Answer(WithCrc("01 06 00 03 00 00"));
    zentrova_.ParamValue(ParamDefines::ReinitCommand, ParamDefines::NoCommand);
    zentrova_.ParamValue(ParamDefines::ReinitCommand, ParamDefines::EnterBootLoader);
    line_.Answer(WithCrc("01 06 00 03 00 63"));
    EXPECT_TRUE(WaitUntil([this] { return !session_.PortIsOpen(); }));
    ASSERT_EQ(line_.Requests().size(), 3U);
    EXPECT_EQ(line_.Requests()[2], WithCrc("01 06 00 03 00 63"));
}

TEST_F(LinkSessionTest, DropsWhatWaitsWhenTheUserGoesOffline) {
    StartProbing();
    zentrova_.ParamValue(28, 1500);
    zentrova_.ParamValue(29, 30000);
    session_.GoOffline();
    EXPECT_FALSE(zentrova_.WritesWait());
    EXPECT_EQ(zentrova_.ParamValue(29), 30000);
    line_.AnswerNothing();
    session_.GoOnline(ConnectPrompt::Skip);
    EXPECT_TRUE(WaitUntil([this] { return line_.Requests().size() >= 2; }));
    Settle();
    EXPECT_EQ(std::ranges::count(line_.Requests(), WithCrc("01 06 00 1D 75 30")), 0);
}

TEST_F(LinkSessionTest, SendsARawValueAbove32767AsItsWord) {
    StartProbing();
    zentrova_.ParamValue(25, 41000);
    EXPECT_TRUE(WaitUntil([this] { return line_.Requests().size() >= 2; }));
    EXPECT_EQ(line_.Requests()[1], WithCrc("01 06 00 19 A0 28"));
    dialogs_.ExpectNotice(QStringLiteral("Error writing parameter"));
    EXPECT_TRUE(WaitUntil([this] { return dialogs_.AllCame(); }));
}

TEST_F(LinkSessionTest, ASingleWriteDuringAPendingDownloadIsAllowed) {
    StartProbing();
    session_.Mbaxp1().StopCyclic(LinkTransaction::AddressingProbe);
    line_.Answer(std::vector<ScriptedLine::Chunk>{{WithCrc("01 10 00 01 00 5F"), 40}});
    line_.Answer(WithCrc("01 06 00 28 07 D0"));
    line_.AnswerAlways(PollReply());
    dialogs_.ExpectNotice(
        QStringLiteral("Parameters downloaded successfully!"), BoxIcon::Exclamation, ApplicationTitle(),
        [this] { EXPECT_TRUE(WaitUntil([this] { return !zentrova_.ParamWritePending(40); })); });
    zentrova_.WriteAllPending(true);
    session_.DefineDownload();
    session_.StartDownload();
    EXPECT_TRUE(WaitUntil([this] { return line_.Requests().size() == 2; }));
    zentrova_.ParamValue(40, 2000);
    EXPECT_TRUE(zentrova_.ParamWritePending(40));
    EXPECT_TRUE(zentrova_.WriteAllPending());
    EXPECT_TRUE(WaitUntil([this] { return dialogs_.AllCame(); }));
    EXPECT_EQ(line_.Requests()[2], WithCrc("01 06 00 28 07 D0"));
    session_.GoOffline();
}

TEST_F(LinkSessionTest, SavingADeadSensorBehindAnEchoingAdapterFails) {
    line_.GiveBack(true);
    session_.GoOnline(ConnectPrompt::Skip);
    zentrova_.ParamUpdate(ParamDefines::SaveCommand, 0);
    dialogs_.ExpectNotice(QStringLiteral("Error writing parameter"));
    zentrova_.ParamValue(ParamDefines::SaveCommand, 1);
    EXPECT_TRUE(WaitUntil([this] { return dialogs_.AllCame(); }));
    EXPECT_TRUE(session_.EchoIsPresent());
    session_.GoOffline();
}

TEST_F(LinkSessionTest, FailedWriteKeepsTheValueAndSaysSoOnce) {
    StartProbing();
    line_.Answer(WithCrc("01 86 03"));
    dialogs_.ExpectNotice(QStringLiteral("Error writing parameter"));
    zentrova_.ParamValue(40, 2000);
    EXPECT_TRUE(WaitUntil([this] { return !zentrova_.ParamWritePending(40); }));
    EXPECT_EQ(zentrova_.ParamValue(40), 2000);
    EXPECT_TRUE(zentrova_.FileChangesNeedSaving());
    EXPECT_TRUE(WasTold("status Communication Status: Slave Device Failure"));
    EXPECT_FALSE(WasTold("refresh"));
}

TEST_F(LinkSessionTest, SaysWhenTheSensorHasSaved) {
    PretendWritten(1, 1);
    dialogs_.ExpectNotice(QStringLiteral("Parameters saved successfully!"));
    session_.TransactionDone(LinkTransaction::SingleWrite);
    EXPECT_FALSE(zentrova_.ParamWritePending(1));
    EXPECT_EQ(told_, (Told{good, "refresh"}));
}

TEST_F(LinkSessionTest, AValueThatTheSensorHasTakenIsNoEditThatAReadCouldLose) {
    PretendWritten(ParamDefines::NearDistance, 1500);
    EXPECT_EQ(zentrova_.EditedRows(), std::vector<std::int16_t>{ParamDefines::NearDistance});
    session_.TransactionDone(LinkTransaction::SingleWrite);
    EXPECT_EQ(zentrova_.EditedRows(), std::vector<std::int16_t>()); // though no poll came yet
    PretendWritten(ParamDefines::NearDistance, 1600);
    dialogs_.ExpectNotice(QStringLiteral("Error writing parameter"));
    session_.TransactionFailed(LinkTransaction::SingleWrite, LinkStatus::Timeout);
    EXPECT_EQ(zentrova_.EditedRows(), std::vector<std::int16_t>{ParamDefines::NearDistance});
    zentrova_.ParamValue(ParamDefines::FarDistance, 20000);
    PretendWritten(ParamDefines::MinRange, 700); // asked for during the download, and not in it
    dialogs_.ExpectNotice(QStringLiteral("Parameters downloaded successfully!"));
    session_.GoOnline(ConnectPrompt::Skip);
    zentrova_.ParamWritePending(ParamDefines::MinRange, true);
    session_.TransactionDone(LinkTransaction::Download);
    EXPECT_EQ(zentrova_.EditedRows(), std::vector<std::int16_t>{ParamDefines::MinRange});
    session_.GoOffline();
}

TEST_F(LinkSessionTest, ClearsTheMarkBeforeTheBox) {
    PretendWritten(1, 1);
    dialogs_.Expect(QStringLiteral("Parameters saved successfully!"), BoxIcon::Exclamation, BoxButtons::Ok,
                    BoxAnswer::Ok, [this] { EXPECT_FALSE(zentrova_.ParamWritePending(1)); });
    session_.TransactionDone(LinkTransaction::SingleWrite);
}

TEST_F(LinkSessionTest, ReconnectsWithTheSettingsThatTheSensorTook) {
    for (const std::int16_t tag :
         {ParamDefines::NetworkAddress, ParamDefines::BaudRateCode, ParamDefines::ParityStopCode}) {
        session_.GoOnline(ConnectPrompt::Skip);
        zentrova_.ParamUpdate(ParamDefines::NetworkAddress, 9);
        zentrova_.ParamUpdate(ParamDefines::BaudRateCode, 3);
        zentrova_.ParamUpdate(ParamDefines::ParityStopCode, 2);
        session_.Mbaxp1().Tag(QString::number(tag));
        session_.TransactionDone(LinkTransaction::SingleWrite);
        EXPECT_EQ(session_.ModbusAddress(), 9);
        EXPECT_EQ(session_.BaudRate(), 3);
        EXPECT_EQ(session_.ParityStop(), 2);
        EXPECT_EQ(session_.Mbaxp1().BaudCode(), 7);
        EXPECT_EQ(session_.Mbaxp1().ParityCode(), 2);
        EXPECT_TRUE(session_.PortIsOpen());
        EXPECT_TRUE(session_.Mbaxp1().TransactionBusy(LinkTransaction::Poll));
        EXPECT_FALSE(session_.Mbaxp1().TransactionBusy(LinkTransaction::AddressingProbe));
        const std::size_t before = line_.Requests().size();
        EXPECT_TRUE(WaitUntil([&] { return line_.Requests().size() > before; }));
        EXPECT_EQ(line_.Requests().back(), WithCrc("09 03 00 00 00 5F"));
        session_.GoOffline();
        session_.ModbusAddress(1);
        session_.BaudRate(4);
        session_.ParityStop(1);
        session_.SetMbaxp1CommProperties(1, 4, 1, 0);
    }
}

TEST_F(LinkSessionTest, AReconnectThatFailsShowsNoBoxAndSaysThatChangesStayHere) {
    session_.GoOnline(ConnectPrompt::Skip);
    device_ = QStringLiteral("/dev/there-is-no-such-port");
    told_.clear();
    session_.Mbaxp1().Tag(QStringLiteral("66"));
    session_.TransactionDone(LinkTransaction::SingleWrite);
    EXPECT_FALSE(session_.PortIsOpen());
    EXPECT_EQ(told_, (Told{good,
                           "status Communication Status: The port couldn't be opened again: changes stay in "
                           "this program",
                           "refresh"}));
}

TEST_F(LinkSessionTest, TakesANewAddressingModeOnceConfirmed) {
    zentrova_.ParamUpdate(ParamDefines::AddressingMode, 1);
    session_.Mbaxp1().Tag(QStringLiteral("68"));
    EXPECT_EQ(session_.AddressingMode(), 0);
    session_.TransactionDone(LinkTransaction::SingleWrite);
    EXPECT_EQ(session_.AddressingMode(), 1);
    zentrova_.ParamUpdate(ParamDefines::AddressingMode, 256);
    EXPECT_THROW(session_.TransactionDone(LinkTransaction::SingleWrite), Fault);
}

TEST_F(LinkSessionTest, GoesOfflineWhenTheSensorEntersItsBootLoader) {
    session_.GoOnline(ConnectPrompt::Skip);
    told_.clear();
    session_.Mbaxp1().Tag(QStringLiteral("3"));
    zentrova_.ParamUpdate(3, 0);
    session_.TransactionDone(LinkTransaction::SingleWrite);
    EXPECT_TRUE(session_.PortIsOpen());
    zentrova_.ParamUpdate(3, 99);
    session_.TransactionDone(LinkTransaction::SingleWrite);
    EXPECT_FALSE(session_.PortIsOpen());
    EXPECT_EQ(told_,
              (Told{good, "refresh", good, "offline", "status Communication Status: Offline", "refresh"}));
}

// The download. -------------------------------------------------------------------------------------

TEST_F(LinkSessionTest, WritesTheWholeTableOnAWriteConnect) {
    choice_ = ConnectChoice::Write;
    zentrova_.ParamUpdate(95, 0x1234);
    line_.Answer(WithCrc("01 03 02 00 46"));
    line_.Answer(WithCrc("01 10 00 00 00 5F"));
    line_.AnswerAlways(PollReply());
    dialogs_.Expect(QStringLiteral("Parameters downloaded successfully!"), BoxIcon::Exclamation,
                    BoxButtons::Ok, BoxAnswer::Ok, [this] {
                        EXPECT_FALSE(zentrova_.WriteAllPending());
                        EXPECT_FALSE(session_.Mbaxp1().TransactionBusy(LinkTransaction::Poll));
                    });
    session_.GoOnline(ConnectPrompt::Ask);
    EXPECT_TRUE(WaitUntil([this] { return line_.Requests().size() >= 3; }));
    const QByteArray &download = line_.Requests()[1];
    EXPECT_EQ(download.first(7), Hex("01 10 00 00 00 5F BE"));
    EXPECT_EQ(download.size(), 7 + 2 * 95 + 2);
    for (std::int16_t n = 1; n < parameterCount; ++n) {
        const int word = static_cast<std::uint8_t>(download[7 + 2 * (n - 1)]) << 8 |
                         static_cast<std::uint8_t>(download[8 + 2 * (n - 1)]);
        EXPECT_EQ(word, zentrova_.ParamValue(n) & 0xFFFF) << n; // read-only rows as well
    }
    EXPECT_EQ(line_.Requests()[2], WithCrc("01 03 00 00 00 5F"));
    EXPECT_EQ(session_.AddressingMode(), 1);
}

// The sensor has the waiting baud rate by the download, and no write of it may follow at the old one.
TEST_F(LinkSessionTest, ADownloadOnConnectCarriesTheValuesThatWait) {
    choice_ = ConnectChoice::Write;
    line_.AnswerNothing(); // to the probe
    line_.AnswerNothing(); // to the write of 28
    line_.Answer(WithCrc("01 03 02 00 46"));
    line_.Answer(WithCrc("01 10 00 00 00 5F"));
    session_.GoOnline(ConnectPrompt::Ask);
    EXPECT_TRUE(WaitUntil([this] { return line_.Requests().size() == 1; }));
    dialogs_.ExpectNotice(QStringLiteral("Error writing parameter"), BoxIcon::Exclamation, ApplicationTitle(),
                          [this] { EXPECT_TRUE(WaitUntil([this] { return dialogs_.AllCame(); })); });
    dialogs_.ExpectNotice(QStringLiteral("Parameters downloaded successfully!"));
    zentrova_.ParamValue(28, 1500);
    zentrova_.ParamValue(ParamDefines::BaudRateCode, 3);
    EXPECT_TRUE(WaitUntil([this] { return dialogs_.AllCame(); }));
    Settle();
    ASSERT_GE(line_.Requests().size(), 4U);
    EXPECT_EQ(line_.Requests()[3].mid(7 + 2 * 65, 2), Hex("00 03"));
    EXPECT_EQ(session_.BaudRate(), 3);
    EXPECT_FALSE(zentrova_.WritesWait());
    EXPECT_FALSE(zentrova_.ParamWritePending(ParamDefines::BaudRateCode));
    session_.GoOffline();
}

TEST_F(LinkSessionTest, DownloadsNoCommandThatTheTableHolds) {
    choice_ = ConnectChoice::Write;
    zentrova_.ParamUpdate(ParamDefines::SaveCommand, ParamDefines::StoreSettings);
    zentrova_.ParamUpdate(ParamDefines::ReinitCommand, ParamDefines::EnterBootLoader);
    line_.Answer(WithCrc("01 03 02 00 46"));
    session_.GoOnline(ConnectPrompt::Ask);
    EXPECT_TRUE(WaitUntil([this] { return line_.Requests().size() >= 2; }));
    const QByteArray &download = line_.Requests()[1];
    EXPECT_EQ(download.mid(7, 2), Hex("00 00"));
    EXPECT_EQ(download.mid(11, 2), Hex("00 00"));
    EXPECT_EQ(zentrova_.ParamValue(ParamDefines::SaveCommand), ParamDefines::StoreSettings);
    EXPECT_EQ(zentrova_.ParamValue(ParamDefines::ReinitCommand), ParamDefines::EnterBootLoader);
    session_.GoOffline();
}

TEST_F(LinkSessionTest, WritesFromAddress1InAddressingMode0) {
    choice_ = ConnectChoice::Write;
    line_.Answer(WithCrc("01 03 02 55 55"));
    session_.GoOnline(ConnectPrompt::Ask);
    EXPECT_TRUE(WaitUntil([this] { return line_.Requests().size() >= 2; }));
    EXPECT_EQ(line_.Requests()[1].first(7), Hex("01 10 00 01 00 5F BE"));
    EXPECT_TRUE(zentrova_.WriteAllPending());
    session_.GoOffline();
}

TEST_F(LinkSessionTest, AfterADownloadFollowsTheTablesCommunicationSettings) {
    session_.GoOnline(ConnectPrompt::Skip);
    zentrova_.WriteAllPending(true);
    zentrova_.ParamUpdate(ParamDefines::NetworkAddress, 17);
    zentrova_.ParamUpdate(ParamDefines::BaudRateCode, 2);
    zentrova_.ParamUpdate(ParamDefines::AddressingMode, 1);
    dialogs_.ExpectNotice(QStringLiteral("Parameters downloaded successfully!"));
    session_.TransactionDone(LinkTransaction::Download);
    EXPECT_EQ(session_.ModbusAddress(), 17);
    EXPECT_EQ(session_.BaudRate(), 2);
    EXPECT_EQ(session_.AddressingMode(), 1);
    EXPECT_FALSE(zentrova_.WriteAllPending());
    EXPECT_TRUE(session_.Mbaxp1().TransactionBusy(LinkTransaction::Poll));
}

TEST_F(LinkSessionTest, FailedDownloadSaysSoAndPollsWithoutAReconnect) {
    choice_ = ConnectChoice::Write;
    line_.Answer(WithCrc("01 03 02 00 46"));
    line_.Answer(WithCrc("01 90 03"));
    line_.AnswerAlways(PollReply());
    zentrova_.ParamUpdate(ParamDefines::NetworkAddress, 17);
    dialogs_.Expect(QStringLiteral("Error downloading Parameters"), BoxIcon::Exclamation, BoxButtons::Ok,
                    BoxAnswer::Ok, [this] { // the mark is cleared before the box; the poll starts after it
                        EXPECT_FALSE(zentrova_.WriteAllPending());
                        EXPECT_FALSE(session_.Mbaxp1().TransactionBusy(LinkTransaction::Poll));
                    });
    session_.GoOnline(ConnectPrompt::Ask);
    EXPECT_TRUE(WaitUntil([this] { return WasTold("first read"); }));
    EXPECT_EQ(session_.ModbusAddress(), 1);
    EXPECT_EQ(session_.AddressingMode(), 1);
    EXPECT_FALSE(zentrova_.WriteAllPending());
}

TEST_F(LinkSessionTest, FailedDownloadOfAFileStartsNothing) {
    session_.GoOnline(ConnectPrompt::Skip);
    zentrova_.WriteAllPending(true);
    dialogs_.ExpectNotice(QStringLiteral("Error downloading Parameters"));
    session_.TransactionFailed(LinkTransaction::Download, LinkStatus::Timeout);
    EXPECT_FALSE(zentrova_.WriteAllPending());
    EXPECT_FALSE(session_.Mbaxp1().TransactionBusy(LinkTransaction::Poll));
}

TEST_F(LinkSessionTest, AnsweringReadTakesTheDownloadBack) {
    choice_ = ConnectChoice::Write;
    line_.AnswerNothing();
    session_.GoOnline(ConnectPrompt::Ask);
    session_.GoOffline();
    choice_ = ConnectChoice::Read;
    session_.GoOnline(ConnectPrompt::Ask);
    session_.GoOffline();
    line_.Answer(WithCrc("01 03 02 00 46"));
    session_.GoOnline(ConnectPrompt::Skip);
    EXPECT_TRUE(WaitUntil([this] { return session_.Mbaxp1().TransactionBusy(LinkTransaction::Poll); }));
    EXPECT_FALSE(session_.Mbaxp1().TransactionBusy(LinkTransaction::Download));
}

TEST_F(LinkSessionTest, ADownloadIsDoneOnceAlone) {
    for (const bool taken : {true, false}) {
        SCOPED_TRACE(taken);
        choice_ = ConnectChoice::Write;
        line_.Answer(WithCrc("01 03 02 00 46"));
        line_.Answer(taken ? WithCrc("01 10 00 00 00 5F") : WithCrc("01 90 04"));
        dialogs_.ExpectNotice(taken ? QStringLiteral("Parameters downloaded successfully!")
                                    : QStringLiteral("Error downloading Parameters"));
        session_.GoOnline(ConnectPrompt::Ask);
        EXPECT_TRUE(WaitUntil([this] { return dialogs_.AllCame(); }));
        session_.GoOffline();
        line_.Answer(WithCrc("01 03 02 00 46"));
        session_.GoOnline(ConnectPrompt::Skip);
        EXPECT_TRUE(WaitUntil([this] { return session_.Mbaxp1().TransactionBusy(LinkTransaction::Poll); }));
        EXPECT_FALSE(session_.Mbaxp1().TransactionBusy(LinkTransaction::Download));
        session_.GoOffline();
    }
}

TEST_F(LinkSessionTest, ADownloadThatIsAskedForDuringAnotherFollowsIt) {
    StartProbing();
    session_.Mbaxp1().StopCyclic(LinkTransaction::AddressingProbe);
    line_.Answer(std::vector<ScriptedLine::Chunk>{{WithCrc("01 10 00 01 00 5F"), 60}});
    line_.Answer(WithCrc("01 10 00 01 00 5F"));
    line_.AnswerAlways(PollReply());
    dialogs_.Expect(QStringLiteral("Parameters downloaded successfully!"), BoxIcon::Exclamation,
                    BoxButtons::Ok, BoxAnswer::Ok,
                    [this] { EXPECT_TRUE(WaitUntil([this] { return dialogs_.AllCame(); })); });
    dialogs_.ExpectNotice(QStringLiteral("Parameters downloaded successfully!"));
    const auto download = [this](std::int32_t value) {
        session_.DefineDownload();
        session_.DownloadValue(1, value);
        session_.StartDownload();
    };
    download(0x11);
    EXPECT_TRUE(WaitUntil([this] { return line_.Requests().size() == 2; }));
    download(0x22);
    EXPECT_TRUE(WaitUntil([this] { return dialogs_.AllCame(); }));
    ASSERT_GE(line_.Requests().size(), 3U);
    EXPECT_EQ(line_.Requests()[1].mid(7, 2), Hex("00 11"));
    EXPECT_EQ(line_.Requests()[2].mid(7, 2), Hex("00 22"));
    session_.GoOffline();
}

TEST_F(LinkSessionTest, ALinkThatIsClosedBehindTheBoxStaysClosed) {
    session_.GoOnline(ConnectPrompt::Skip);
    dialogs_.Expect(QStringLiteral("Parameters downloaded successfully!"), BoxIcon::Exclamation,
                    BoxButtons::Ok, BoxAnswer::Ok, [this] { session_.GoOffline(); });
    session_.TransactionDone(LinkTransaction::Download);
    EXPECT_FALSE(session_.PortIsOpen());
}

TEST_F(LinkSessionTest, ADownloadThatWasDoneIsNotWantedAgainThoughThePortIsClosedBehindItsBox) {
    choice_ = ConnectChoice::Write;
    line_.Answer(WithCrc("01 03 02 00 46"));
    line_.Answer(WithCrc("01 10 00 00 00 5F"));
    dialogs_.Expect(QStringLiteral("Parameters downloaded successfully!"), BoxIcon::Exclamation,
                    BoxButtons::Ok, BoxAnswer::Ok, [this] { session_.GoOffline(); });
    session_.GoOnline(ConnectPrompt::Ask);
    EXPECT_TRUE(WaitUntil([this] { return dialogs_.AllCame() && !session_.PortIsOpen(); }));
    line_.Answer(WithCrc("01 03 02 00 46"));
    session_.GoOnline(ConnectPrompt::Skip);
    EXPECT_TRUE(WaitUntil([this] { return session_.Mbaxp1().TransactionBusy(LinkTransaction::Poll); }));
    EXPECT_FALSE(session_.Mbaxp1().TransactionBusy(LinkTransaction::Download));
}

TEST_F(LinkSessionTest, AWriteToAnAddressThatNoSensorHasFailsLikeAnyOther) {
    session_.GoOnline(ConnectPrompt::Skip);
    session_.ModbusAddress(300);
    dialogs_.ExpectNotice(QStringLiteral("Error writing parameter"));
    zentrova_.ParamValue(ParamDefines::NearDistance, 1500);
    EXPECT_TRUE(zentrova_.ParamWritePending(ParamDefines::NearDistance)); // the outcome comes later
    EXPECT_TRUE(WaitUntil([this] { return dialogs_.AllCame(); }));
    EXPECT_FALSE(zentrova_.ParamWritePending(ParamDefines::NearDistance));
    EXPECT_TRUE(WasTold("status Communication Status: Index Error"));
}

TEST_F(LinkSessionTest, ADownloadToAnAddressThatNoSensorHasFailsLikeAnyOther) {
    session_.GoOnline(ConnectPrompt::Skip);
    session_.ModbusAddress(300);
    dialogs_.ExpectNotice(QStringLiteral("Error downloading Parameters"));
    zentrova_.WriteAllPending(true);
    session_.DefineDownload();
    session_.DownloadValue(1, 0x11);
    session_.StartDownload();
    EXPECT_TRUE(zentrova_.WriteAllPending()); // the outcome comes later
    EXPECT_TRUE(WaitUntil([this] { return dialogs_.AllCame(); }));
    EXPECT_FALSE(zentrova_.WriteAllPending()); // or every later poll would be dropped
}

TEST_F(LinkSessionTest, DropsTheWishToDownloadWhereItIsToldTo) {
    choice_ = ConnectChoice::Write;
    line_.AnswerNothing();
    session_.GoOnline(ConnectPrompt::Ask);
    session_.GoOffline();
    line_.Answer(WithCrc("01 03 02 00 46"));
    session_.ReadOnConnect();
    session_.GoOnline(ConnectPrompt::Skip);
    EXPECT_TRUE(WaitUntil([this] { return session_.Mbaxp1().TransactionBusy(LinkTransaction::Poll); }));
    EXPECT_FALSE(session_.Mbaxp1().TransactionBusy(LinkTransaction::Download));
    session_.GoOffline();
}

TEST_F(LinkSessionTest, KeepsTheDirectionForAConnectWithoutAQuestion) {
    choice_ = ConnectChoice::Write;
    line_.AnswerNothing();
    session_.GoOnline(ConnectPrompt::Ask);
    session_.GoOffline();
    line_.Answer(WithCrc("01 03 02 00 46"));
    session_.GoOnline(ConnectPrompt::Skip);
    EXPECT_TRUE(WaitUntil([this] { return session_.Mbaxp1().TransactionBusy(LinkTransaction::Download); }));
    session_.GoOffline();
}

} // namespace ztv

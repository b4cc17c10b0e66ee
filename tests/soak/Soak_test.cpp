#include "link/LinkStatus.h"
#include "model/ParamDefines.h"
#include "tests/e2e/Session.h"
#include "tests/helpers/Printers.h"
#include "tests/soak/FaultyLine.h"
#include "tests/soak/LineFault.h"

#include <QCommandLineParser>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <algorithm>
#include <cstdio>
#include <deque>
#include <limits>
#include <malloc.h>
#include <map>
#include <optional>
#include <set>
#include <unistd.h>

namespace ztv {

// The whole program polls the simulated sensor over a faulty line, far faster than in normal use: soak_test
// --rounds N --seed S [--echo]. Each round must end with the status of its fault, and each displayed value
// must be the one that the sensor sent in that round.

namespace {

constexpr int quickPeriodMs = 2;    // the poll's period in most rounds
constexpr int usualPeriodMs = 200;  // long enough for a late reply
constexpr int cleanShare = 97;      // rounds without a fault, per hundred
constexpr int stallMs = 25;         // a pause of the machine from which on a reply may be late
constexpr int longestRoundMs = 130; // without a pause
constexpr int lateBeforeOwnMs = 40; // after the next request
constexpr int lateAloneMs = 70;     // after the next request: later than any usual delay
constexpr int calmMs = 12;          // late replies can be distinguished only if the usual delay is shorter
constexpr int roundsByChance = 300; // before the first fault of each kind
constexpr int roundsForEachFault = 1500;
constexpr int roundsToWarmUp = 700;
constexpr int writeEvery = 25;
constexpr int reconnectEvery = 2500;
constexpr std::int16_t countsToReset = 30000; // a count past 32767 ends the program
constexpr int longestSilenceMs = 20000;

constexpr std::int16_t good = LinkStatus::NoError;

struct Options {
    int rounds = roundsForEachFault;
    unsigned seed = 1;
    bool echo = false; // with a local echo
};

Options OptionsGiven() {
    QCommandLineParser parser;
    parser.addOptions({{QStringLiteral("rounds"), QString(), QStringLiteral("N"), QStringLiteral("1500")},
                       {QStringLiteral("seed"), QString(), QStringLiteral("S"), QStringLiteral("1")},
                       QCommandLineOption(QStringLiteral("echo"))});
    parser.parse(QCoreApplication::arguments());
    return {.rounds = parser.value(QStringLiteral("rounds")).toInt(),
            .seed = parser.value(QStringLiteral("seed")).toUInt(),
            .echo = parser.isSet(QStringLiteral("echo"))};
}

qsizetype OpenDescriptors() {
    return QDir(QStringLiteral("/proc/self/fd"))
        .entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::System)
        .size();
}

struct Memory {
    long residentKb = std::numeric_limits<long>::max();
    long heapKb = std::numeric_limits<long>::max(); // in use
};

Memory MemoryNow() {
    QFile file(QStringLiteral("/proc/self/statm"));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return {.residentKb = file.readAll().split(' ').at(1).toLong() * sysconf(_SC_PAGESIZE) / 1024,
            .heapKb = static_cast<long>(mallinfo2().uordblks / 1024)};
}

// The minimum of each. The screen's caches fill and are emptied again, so only the lowest use counts.
Memory Lower(const Memory &a, const Memory &b) {
    return {.residentKb = std::min(a.residentKb, b.residentKb), .heapKb = std::min(a.heapKb, b.heapKb)};
}

#if defined(__SANITIZE_ADDRESS__)
constexpr bool memoryIsTheProgramsOwn = false;
#else
constexpr bool memoryIsTheProgramsOwn = true;
#endif

} // namespace

class SoakTest : public SessionTest {
protected:
    ~SoakTest() override {
        form_.reset();
        line_.reset();
    }

    void Begin(const Options &options);
    void Run();
    void End();

private:
    // One round of the poll; begins when the round before it ends.
    struct Round {
        LineFault fault = LineFault::None;
        std::int16_t status = good; // the expected outcome
        QByteArray reply;           // the sensor's own
        bool requested = false;
        qint64 repliedMs = -1; // when it was sent to the host
    };

    void OnRequest(const QByteArray &request);
    void OnReply(const QByteArray &reply);
    void OnPolled(std::int16_t status);
    void OnStatus(const QString &text);
    void OnWritten(std::int16_t status);
    void TreatPoll(const QByteArray &request);
    void TreatWrite(const QByteArray &request);
    LineFault NextPollFault();
    bool MayApply(LineFault fault) const;
    std::int16_t Plan(LineFault fault);
    void ForwardRequest(const QByteArray &request, LineFault fault);
    void ForwardReply(const QByteArray &reply, LineFault fault);
    void ChangeSensor();
    void CheckTable();
    void CheckCounts();
    void CheckScreen(std::int16_t status);
    void Write();
    bool IsCalm() const { return !owed_ && next_ == Next::Any && line_->IsPlugged(); }
    void SendLate(int milliseconds, const QByteArray &reply);
    void PollQuickly();
    void PollAtTheUsualPace();
    void Reconnect();
    void SampleMemory();
    qint64 Now() const { return clock_.elapsed(); }

    enum class Next { Any, LateThenOwn, LateOnly };

    Options options_;
    std::optional<Damage> damage_;
    std::unique_ptr<FaultyLine> line_;
    QElapsedTimer clock_;
    QLineEdit *distance_ = nullptr;
    std::vector<std::int16_t> writable_;
    std::vector<int> moved_;

    std::deque<LineFault> pollFaultsDue_; // each comes once; after that, chance decides
    std::deque<LineFault> writeFaultsDue_;
    Round round_;
    LineFault before_ = LineFault::None; // the fault of the round before
    Next next_ = Next::Any;
    QByteArray late_;
    bool owed_ = false; // a poll timed out, and no later one was answered
    double usualMs_ = 0;
    qint64 roundBeganMs_ = 0;
    LineFault writeFault_ = LineFault::None;
    std::optional<std::int16_t> writeStatus_; // the expected status, while a write is on the line
    qint64 writeRepliedMs_ = -1;              // when its reply was sent to the host
    bool probing_ = false;
    bool asWrite_ = false; // the sensor's reply belongs to a write
    int pulledRounds_ = 0;
    bool lineIsGood_ = false;
    QString shown_;

    int rounds_ = 0;
    int timeouts_ = 0;
    int crcErrors_ = 0;
    int countedTimeouts_ = 0;
    int countedCrcErrors_ = 0;
    int heldBack_ = 0; // good replies that the master rejected because a late one was owed
    int stalls_ = 0;
    int writes_ = 0;
    int failedWrites_ = 0;
    int reconnects_ = 0;
    std::map<LineFault, int> came_;
    std::map<LineFault, int> cameToWrites_;
    Memory earlyUse_; // in a fifth of the run, after the warm-up
    Memory lateUse_;  // in the last fifth
    qsizetype descriptors_ = 0;
};

void SoakTest::Begin(const Options &options) {
    options_ = options;
    damage_.emplace(options.seed);
    StartSensor();
    for (const int measured : {18, 19, 38, 46, 48, 60, 61}) {
        sensor_->SetRegister(measured, sensor_->Register(measured));
    }
    const QString link = configuration_.filePath(QStringLiteral("faulty"));
    line_ = std::make_unique<FaultyLine>(*sensor_, link);
    line_->GiveBack(options.echo);
    qputenv("ZTVLINK_PORT_1", link.toLocal8Bit());
    QObject::connect(line_.get(), &FaultyLine::Request, line_.get(),
                     [this](const QByteArray &request) { OnRequest(request); });
    QObject::connect(line_.get(), &FaultyLine::Reply, line_.get(),
                     [this](const QByteArray &reply) { OnReply(reply); });

    Start();
    distance_ = &Ui().Get<QLineEdit>("TextParam(6)");
    const ClassZentrova &table = form_->Zentrova();
    for (std::int16_t tag = 1; tag < table.ParamCount(); ++tag) {
        const bool ofTheLine = tag >= ParamDefines::NetworkAddress && tag <= ParamDefines::AddressingMode;
        // In hyperbolic mode the program writes a computed near distance, which random values may put out of
        // range.
        if (!table.ParamReadOnly(tag) && !ofTheLine && tag != ParamDefines::SaveCommand &&
            tag != ParamDefines::ReinitCommand && tag != ParamDefines::AnalogOutputMode) {
            writable_.push_back(tag);
        } else if (table.ParamReadOnly(tag) && table.ParamMax(tag) == 65535) {
            moved_.push_back(tag);
        }
    }
    for (std::size_t k = 1; k < LineFaultTable.size(); ++k) {
        const auto fault = static_cast<LineFault>(k);
        pollFaultsDue_.push_back(fault);
        if (RowOf(fault).appliesToWrites) {
            writeFaultsDue_.push_back(fault);
        }
    }
    std::mt19937 order(options.seed);
    std::shuffle(pollFaultsDue_.begin(), pollFaultsDue_.end(), order);
    std::shuffle(writeFaultsDue_.begin(), writeFaultsDue_.end(), order);

    QObject::connect(&form_->Link(), &LinkSession::StatusChanged, form_.get(),
                     [this](const QString &text) { OnStatus(text); });
    // Connected after the session's own handlers, so that they have run.
    Mbaxp &master = form_->Link().Mbaxp1();
    QObject::connect(&master, &Mbaxp::TransactionDone, form_.get(), [this](std::int16_t transaction) {
        if (transaction == LinkTransaction::Poll) {
            OnPolled(good);
        } else if (transaction == LinkTransaction::SingleWrite) {
            OnWritten(good);
        } else {
            // The probe has just started the poll; replaces its period by the quick one.
            PollQuickly();
        }
    });
    QObject::connect(&master, &Mbaxp::TransactionFailed, form_.get(),
                     [this](std::int16_t transaction, std::int16_t status) {
                         if (transaction == LinkTransaction::Poll) {
                             OnPolled(status);
                         } else if (transaction == LinkTransaction::SingleWrite) {
                             OnWritten(status);
                         }
                     });
    clock_.start();
    GoOnline();
}

void SoakTest::PollQuickly() {
    form_->Link().Mbaxp1().DefineReadRegisters(LinkTransaction::Poll, 1, 0,
                                               form_->Zentrova().ParamCount() - 1, quickPeriodMs);
}

// Polls with the program's own period. The master relies on its length to recognise a late reply.
void SoakTest::PollAtTheUsualPace() {
    Mbaxp &master = form_->Link().Mbaxp1();
    master.StopCyclic(LinkTransaction::Poll);
    QTimer::singleShot(usualPeriodMs / 2, Qt::PreciseTimer, form_.get(), [this] {
        roundBeganMs_ = Now();
        form_->Link().Mbaxp1().StartCyclic(LinkTransaction::Poll);
    });
}

// Changes the values in each round, so that none can be mistaken for another round's.
void SoakTest::ChangeSensor() {
    for (const int tag : moved_) {
        sensor_->SetRegister(tag, (rounds_ * 31 + tag * 257) & 0xFFFF);
    }
    sensor_->SetRegister(ParamDefines::ActualDistance, 1200 + rounds_ * 37 % 18000);
}

LineFault SoakTest::NextPollFault() {
    if (lineIsGood_) {
        return LineFault::None;
    }
    if (!pollFaultsDue_.empty() && rounds_ > roundsByChance && damage_->Between(1, 10) == 1) {
        const LineFault fault = pollFaultsDue_.front();
        pollFaultsDue_.pop_front();
        return fault;
    }
    if (damage_->Between(1, 100) <= cleanShare) {
        return LineFault::None;
    }
    int all = 0;
    for (const LineFaultRow &row : LineFaultTable) {
        all += row.weight;
    }
    int drawn = damage_->Between(1, all);
    std::size_t k = 0;
    while (drawn > LineFaultTable.at(k).weight) {
        drawn -= LineFaultTable.at(k).weight;
        ++k;
    }
    return static_cast<LineFault>(k);
}

// Whether the fault may be used now. A late reply can be distinguished only because it comes later than
// usual. And a waiting write must find the line in the state of its own fault.
bool SoakTest::MayApply(LineFault fault) const {
    const bool writeWaits = form_->Link().Mbaxp1().TransactionBusy(LinkTransaction::SingleWrite);
    switch (fault) {
    case LineFault::LateReply:
    case LineFault::LateBeforeOwn:
    case LineFault::LateAlone:
        return !owed_ && usualMs_ <= calmMs && !writeWaits;
    case LineFault::SlowReply:
        return !owed_;
    case LineFault::HangUp:
    case LineFault::HangUpInReply:
    case LineFault::HangUpAfter:
        return !writeWaits;
    default:
        return true;
    }
}

std::int16_t SoakTest::Plan(LineFault fault) {
    const std::int16_t status = RowOf(fault).status;
    sensor_->Faults().exception = 0;
    if (fault == LineFault::Exception) {
        sensor_->Faults().exception = damage_->Between(1, 7);
        return static_cast<std::int16_t>(sensor_->Faults().exception);
    }
    if (fault == LineFault::ExceptionBeyond) {
        sensor_->Faults().exception = damage_->Between(8, 255);
    }
    return status;
}

void SoakTest::OnRequest(const QByteArray &request) {
    const bool write = request.at(1) == 6;
    const bool poll = request.at(1) == 3 && request.at(5) != 1;
    asWrite_ = write;
    probing_ = !write && !poll;
    if (write) {
        TreatWrite(request);
    } else if (poll) {
        TreatPoll(request);
    } else {
        sensor_->Faults().exception = 0;
        line_->SendToSensor(request);
    }
}

void SoakTest::TreatPoll(const QByteArray &request) {
    ChangeSensor();
    round_ = {};
    round_.requested = true;
    if (next_ == Next::LateThenOwn || next_ == Next::LateOnly) {
        round_.status = next_ == Next::LateOnly ? LinkStatus::Timeout : good;
        sensor_->Faults().exception = 0;
        line_->SendToSensor(request);
        return;
    }
    LineFault fault = NextPollFault();
    if (!MayApply(fault)) {
        pollFaultsDue_.push_back(fault);
        fault = LineFault::None;
    }
    round_.fault = fault;
    round_.status = Plan(fault);
    if (fault != LineFault::None) {
        ++came_[fault];
    }
    ForwardRequest(request, fault);
}

void SoakTest::TreatWrite(const QByteArray &request) {
    writeFault_ = LineFault::None;
    if (IsCalm() && damage_->Between(1, 10) <= 2) {
        if (!writeFaultsDue_.empty()) {
            writeFault_ = writeFaultsDue_.front();
            writeFaultsDue_.pop_front();
        } else {
            const auto drawn =
                static_cast<LineFault>(damage_->Between(1, static_cast<int>(LineFaultTable.size()) - 1));
            writeFault_ = RowOf(drawn).appliesToWrites ? drawn : LineFault::None;
        }
        if (writeFault_ != LineFault::None) {
            ++cameToWrites_[writeFault_];
        }
    }
    writeStatus_ = Plan(writeFault_);
    writeRepliedMs_ = -1;
    const bool save = request.at(3) == 0; // the register of parameter 1
    if (*writeStatus_ != good) {
        dialogs_.ExpectNotice(QStringLiteral("Error writing parameter"));
    } else if (save) {
        dialogs_.ExpectNotice(QStringLiteral("Parameters saved successfully!"));
    }
    ForwardRequest(request, writeFault_);
}

void SoakTest::ForwardRequest(const QByteArray &request, LineFault fault) {
    switch (fault) {
    case LineFault::LostRequest:
        break;
    case LineFault::DamagedRequest:
        line_->SendToSensor(damage_->WithFlippedBits(request));
        break;
    case LineFault::HangUp:
        line_->HangUp();
        break;
    default:
        line_->SendToSensor(request);
        break;
    }
}

void SoakTest::OnReply(const QByteArray &reply) {
    if (!line_->IsPlugged()) {
        return;
    }
    if (probing_) {
        line_->SendToHost(reply);
        return;
    }
    if (asWrite_) {
        writeRepliedMs_ = Now();
        ForwardReply(reply, writeFault_);
        return;
    }
    if (!round_.requested) {
        return; // a pause of the machine ended the round earlier
    }
    round_.reply = reply;
    round_.repliedMs = Now();
    if (next_ != Next::Any) {
        const int lateMs = next_ == Next::LateOnly ? lateAloneMs : lateBeforeOwnMs;
        line_->SendToHostAfter(lateMs, late_);
        if (next_ == Next::LateThenOwn) {
            line_->SendToHostAfter(lateMs + damage_->Between(1, 20), reply);
        }
        return;
    }
    ForwardReply(reply, round_.fault);
}

void SoakTest::ForwardReply(const QByteArray &reply, LineFault fault) {
    switch (fault) {
    case LineFault::LostReply:
        break;
    case LineFault::DamagedReply:
        line_->SendToHost(damage_->WithFlippedBits(reply));
        break;
    case LineFault::ShortReply:
        line_->SendToHost(damage_->CutShort(reply));
        break;
    case LineFault::ReplyInPieces: {
        const int middle = damage_->Between(1, static_cast<int>(reply.size()) - 2);
        line_->SendToHost(reply.first(middle));
        line_->SendToHostAfter(2, reply.sliced(middle, 1));
        line_->SendToHostAfter(damage_->Between(4, 8), reply.sliced(middle + 1));
        break;
    }
    case LineFault::SlowReply:
        line_->SendToHostAfter(damage_->Between(5, 60), reply);
        break;
    case LineFault::LateReply:
        SendLate(damage_->Between(120, 150), reply);
        break;
    case LineFault::LateBeforeOwn:
    case LineFault::LateAlone:
        late_ = reply; // kept until the next request
        break;
    case LineFault::GarbageBefore:
        line_->SendToHost(damage_->Garbage() + reply);
        break;
    case LineFault::GarbageAfter:
        line_->SendToHost(reply + damage_->Garbage());
        break;
    case LineFault::ForeignBefore:
        line_->SendToHost(damage_->ForeignFrame() + reply);
        break;
    case LineFault::ForeignAfter:
        line_->SendToHost(reply + damage_->ForeignFrame());
        break;
    case LineFault::ForeignInstead:
        line_->SendToHost(damage_->ForeignFrame());
        break;
    case LineFault::DoubledReply:
        line_->SendToHost(reply + reply);
        break;
    case LineFault::HangUpInReply:
        line_->SendToHost(reply.first(reply.size() / 2));
        line_->HangUp();
        break;
    default:
        line_->SendToHost(reply);
        break;
    }
}

// Sends a late reply, unless a pause of the machine has brought it close to the next request. Then nothing
// could distinguish it from that request's own reply, so it is dropped.
void SoakTest::SendLate(int milliseconds, const QByteArray &reply) {
    const qint64 due = Now() + milliseconds;
    QTimer::singleShot(milliseconds, Qt::PreciseTimer, line_.get(), [this, due, reply] {
        if (Now() - due < stallMs && !round_.requested) {
            line_->SendToHost(reply);
        }
    });
}

void SoakTest::OnPolled(std::int16_t status) {
    ++rounds_;
    const bool pulled = !round_.requested;
    std::int16_t wanted = pulled ? LinkStatus::ReadError : round_.status;
    const qint64 took = Now() - roundBeganMs_;
    bool stalled = false;
    if (pulled) {
        EXPECT_FALSE(line_->IsPlugged()) << "a round without a request";
    } else if (status == LinkStatus::Timeout && wanted != status) {
        if (round_.repliedMs < 0 ? took > longestRoundMs : round_.repliedMs - roundBeganMs_ > stallMs) {
            wanted = status;
            stalled = true;
            ++stalls_;
        } else if (owed_ && round_.repliedMs >= 0) {
            wanted = status; // a reply with an unusual delay may then be a late one
            ++heldBack_;
        }
    }
    EXPECT_EQ(status, wanted) << "round " << rounds_ << ", fault: " << RowOf(before_).name << ", then "
                              << RowOf(round_.fault).name << ", replied after "
                              << round_.repliedMs - roundBeganMs_ << " ms, ended after " << took << " ms";
    timeouts_ += status == LinkStatus::Timeout ? 1 : 0;
    crcErrors_ += status == LinkStatus::CrcError ? 1 : 0;
    CheckCounts();
    CheckScreen(status);
    if (status == good) {
        CheckTable();
        owed_ = false;
        usualMs_ = std::max(static_cast<double>(took), usualMs_ * 7 / 8);
    } else if (status == LinkStatus::Timeout || round_.fault == LineFault::ForeignInstead) {
        owed_ = true;
    }

    next_ = Next::Any;
    const LineFault fault = round_.fault;
    before_ = fault;
    round_ = {};
    roundBeganMs_ = Now();
    if (fault == LineFault::LateReply || fault == LineFault::LateBeforeOwn || fault == LineFault::LateAlone) {
        next_ = fault == LineFault::LateReply       ? Next::Any
                : fault == LineFault::LateBeforeOwn ? Next::LateThenOwn
                                                    : Next::LateOnly;
        PollAtTheUsualPace();
    } else if (stalled) {
        PollAtTheUsualPace(); // its reply comes late, too
    } else if (fault == LineFault::HangUpAfter && line_->IsPlugged()) {
        line_->HangUp();
    }
    if (!line_->IsPlugged() && ++pulledRounds_ == 6) {
        pulledRounds_ = 0;
        line_->Replug();
    }
}

void SoakTest::CheckCounts() {
    LinkSession &link = form_->Link();
    EXPECT_EQ(link.TimeoutCount(), timeouts_ - countedTimeouts_);
    EXPECT_EQ(link.CrcErrorCount(), crcErrors_ - countedCrcErrors_);
    if (link.TimeoutCount() >= countsToReset) {
        countedTimeouts_ = timeouts_;
        link.TimeoutCount(0);
    }
    if (link.CrcErrorCount() >= countsToReset) {
        countedCrcErrors_ = crcErrors_;
        link.CrcErrorCount(0);
    }
}

// Checks that every row has the value that the sensor sent in this round, except a row that is being written.
void SoakTest::CheckTable() {
    const ClassZentrova &table = form_->Zentrova();
    ASSERT_EQ(round_.reply.size(), 5 + 2 * (table.ParamCount() - 1));
    for (std::int16_t tag = 1; tag < table.ParamCount(); ++tag) {
        const qsizetype at = 3 + 2 * (tag - 1);
        auto word = static_cast<quint16>(static_cast<quint8>(round_.reply[at]) << 8 |
                                         static_cast<quint8>(round_.reply[at + 1]));
        if (table.ParamWritePending(tag)) {
            const Mbaxp &master = form_->Link().Mbaxp1();
            EXPECT_EQ(master.Tag(), QString::number(tag));
            word = static_cast<quint16>(master.RegisterValue(LinkTransaction::SingleWrite, 0));
        }
        const std::int32_t sent = table.ParamSigned(tag) ? static_cast<qint16>(word) : std::int32_t{word};
        EXPECT_EQ(table.ParamValue(tag), sent)
            << "parameter " << tag << " in round " << rounds_ << ", fault: " << RowOf(before_).name
            << ", then " << RowOf(round_.fault).name;
    }
}

// After a good poll the new value is displayed, after any other the old one.
void SoakTest::CheckScreen(std::int16_t status) {
    const QString word = status == good ? QStringLiteral(" Online") : MbaxpErrorDesc(status);
    EXPECT_EQ(Ui().Text("StatusText").toStdString(),
              (QStringLiteral("Communication Status: ") + word).toStdString());
    if (status == good) {
        shown_ =
            form_->Zentrova().FormatRaw(Value(ParamDefines::ActualDistance), ParamDefines::ActualDistance);
    }
    EXPECT_EQ(distance_->text().toStdString(), shown_.toStdString());
}

void SoakTest::Write() {
    std::int16_t tag = ParamDefines::SaveCommand;
    std::int32_t value = ParamDefines::StoreSettings;
    if (damage_->Between(1, 10) > 1) {
        tag =
            writable_[static_cast<std::size_t>(damage_->Between(0, static_cast<int>(writable_.size()) - 1))];
        value = damage_->Between(form_->Zentrova().ParamMin(tag), form_->Zentrova().ParamMax(tag));
    }
    if (Value(tag) == value) {
        return;
    }
    ++writes_;
    SessionTest::Write(tag, value);
}

// Checks the status before the box, because a write that failed by a pause of the machine opens a box too.
void SoakTest::OnStatus(const QString &text) {
    if (writeStatus_ != good || !dialogs_.AllCame() || !text.endsWith(MbaxpErrorDesc(LinkStatus::Timeout))) {
        return;
    }
    const qint64 held = (writeRepliedMs_ < 0 ? Now() : writeRepliedMs_) - roundBeganMs_;
    if (held > (writeRepliedMs_ < 0 ? longestRoundMs : stallMs)) {
        ++stalls_;
        writeStatus_ = LinkStatus::Timeout;
        dialogs_.ExpectNotice(QStringLiteral("Error writing parameter"));
    }
}

void SoakTest::OnWritten(std::int16_t status) {
    // With the adapter unplugged, the write didn't reach the line.
    const std::int16_t wanted = writeStatus_.value_or(LinkStatus::ReadError);
    EXPECT_EQ(status, wanted) << "write " << writes_ << ", fault: " << RowOf(writeFault_).name;
    EXPECT_TRUE(dialogs_.AllCame());
    failedWrites_ += status == good ? 0 : 1;
    writeStatus_.reset();
    roundBeganMs_ = Now();
}

void SoakTest::Reconnect() {
    ++reconnects_;
    form_->GoOffline();
    form_->GoOnline(1);
    round_ = {};
    owed_ = false;
    usualMs_ = 0;
    roundBeganMs_ = Now();
}

void SoakTest::SampleMemory() {
    if (rounds_ % 50 != 0 || !IsCalm()) {
        return;
    }
    sensor_->ClearRecords(); // the sensor keeps them until they are cleared
    const int fifth = options_.rounds / 5;
    const int warm = std::max(fifth, roundsToWarmUp);
    if (rounds_ >= warm && rounds_ < warm + fifth) {
        earlyUse_ = Lower(earlyUse_, MemoryNow());
        descriptors_ = OpenDescriptors();
    } else if (rounds_ >= options_.rounds - fifth) {
        lateUse_ = Lower(lateUse_, MemoryNow());
    }
}

void SoakTest::Run() {
    int writtenAt = 0;
    int reconnectedAt = roundsByChance - reconnectEvery;
    QElapsedTimer silence;
    silence.start();
    for (int seen = 0; rounds_ < options_.rounds && !HasFailure();) {
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
        if (rounds_ == seen) {
            ASSERT_LT(silence.elapsed(), longestSilenceMs) << "the poll has stopped";
            continue;
        }
        seen = rounds_;
        silence.start();
        SampleMemory();
        // Going offline leaves the mark of a write under way.
        const bool writing = form_->Link().Mbaxp1().TransactionBusy(LinkTransaction::SingleWrite);
        if (rounds_ >= reconnectedAt + reconnectEvery && IsCalm() && !writing) {
            reconnectedAt = rounds_;
            Reconnect();
        } else if (rounds_ >= writtenAt + writeEvery && IsCalm() && !round_.requested &&
                   form_->Link().Mbaxp1().TransactionBusy(LinkTransaction::Poll)) {
            writtenAt = rounds_;
            Write();
        }
    }
}

// On a good line the program must have the sensor's values again.
void SoakTest::End() {
    lineIsGood_ = true;
    ASSERT_TRUE(WaitUntil([this] { return IsCalm() && dialogs_.AllCame(); }));
    ASSERT_TRUE(WaitForPolls(3));
    form_->Link().Mbaxp1().StopCyclic(LinkTransaction::Poll);
    ASSERT_TRUE(WaitUntil([this] { return !round_.requested; }));
    for (int n = 1; n < sensor_->Count(); ++n) {
        EXPECT_EQ(Value(static_cast<std::int16_t>(n)), sensor_->Register(n)) << "parameter " << n;
        EXPECT_FALSE(form_->Zentrova().ParamWritePending(static_cast<std::int16_t>(n)));
    }
    EXPECT_LE(heldBack_, timeouts_ / 20 + 2);
    EXPECT_LE(stalls_, rounds_ / 1000 + 2);
    EXPECT_LE(OpenDescriptors(), descriptors_); // threads that end after half a minute idle close theirs
    if (memoryIsTheProgramsOwn) {
        EXPECT_LE(lateUse_.heapKb, earlyUse_.heapKb + 64);
        EXPECT_LE(lateUse_.residentKb, earlyUse_.residentKb + 2048);
    }

    EXPECT_EQ(form_->Link().EchoIsPresent(), options_.echo);

    std::printf("seed %u%s: %d rounds and %d writes (%d failed) in %.0f s, %d reconnects\n", options_.seed,
                options_.echo ? " with a local echo" : "", rounds_, writes_, failedWrites_,
                static_cast<double>(Now()) / 1000, reconnects_);
    std::printf("timeouts %d, CRC errors %d, replies held back %d, stalls of the machine %d\n", timeouts_,
                crcErrors_, heldBack_, stalls_);
    std::printf("heap %ld to %ld KB, resident %ld to %ld KB, %lld descriptors\n", earlyUse_.heapKb,
                lateUse_.heapKb, earlyUse_.residentKb, lateUse_.residentKb,
                static_cast<long long>(descriptors_));
    for (std::size_t k = 1; k < LineFaultTable.size(); ++k) {
        const auto fault = static_cast<LineFault>(k);
        std::printf("%-34s %6d in the poll, %4d at writes\n", RowOf(fault).name, came_[fault],
                    cameToWrites_[fault]);
        EXPECT_TRUE(came_[fault] > 0 || options_.rounds < roundsForEachFault)
            << RowOf(fault).name << " never came";
    }
}

TEST_F(SoakTest, ShowsNoWrongValueAndCountsEachFaultWhateverTheLineDoes) {
    Begin(OptionsGiven());
    Run();
    if (!HasFailure()) {
        End();
    }
}

} // namespace ztv

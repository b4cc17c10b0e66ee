#include "link/Mbaxp.h"

#include "link/LineCodes.h"
#include "link/LinkStatus.h"
#include "support/ProgramVersion.h"

#include <QCoreApplication>
#include <QEvent>
#include <algorithm>
#include <cmath>

namespace {

constexpr QEvent::Type startEvent = QEvent::User;

constexpr int highestSlave = 247;
constexpr qsizetype mostReceivedBytes = 1024; // a babbling line mustn't fill the memory

// Of late replies.
constexpr int owedForTimeouts = 5;          // one that is later than this comes no more
constexpr qint64 owedForAtMostUs = 500'000; // beyond one timeout
constexpr qint64 ownReplyGapUs = 50'000;    // behind a late one, its own follows sooner than this
constexpr qint64 unusualDelayUs = 15'000;   // beyond the usual delay; adapters vary by about as much
constexpr int mostDoubtfulRuns = 2;         // then the line is given time until nothing is owed any more

QSerialPort::Parity ParityOf(std::int16_t code) {
    switch (code) {
    case 1:
        return QSerialPort::OddParity;
    case 2:
        return QSerialPort::EvenParity;
    default:
        return QSerialPort::NoParity;
    }
}

// The reply to one request could be taken for the reply to the other. The echo of a write names what was
// written: taken for that of the same write, it does no harm.
bool RepliesLookAlike(const ModbusFrame::Request &a, const ModbusFrame::Request &b) {
    return a.function == ModbusFrame::ReadHoldingRegisters && b.function == a.function &&
           a.slave == b.slave && a.quantity == b.quantity;
}

} // namespace

Mbaxp::Mbaxp(std::function<QString(std::int16_t)> deviceOfPort, QObject *parent)
    : QObject(parent),
      deviceOfPort_(std::move(deviceOfPort)) {
    clock_.start();
    wake_.setSingleShot(true);
    wake_.setTimerType(Qt::PreciseTimer);
    connect(&wake_, &QTimer::timeout, this, &Mbaxp::OnWake);
    connect(&line_, &SerialLine::BytesArrived, this, &Mbaxp::OnBytes);
    connect(&line_, &SerialLine::HungUp, this, &Mbaxp::OnHungUp);
}

bool Mbaxp::Refuse(std::int16_t status) {
    lastError_ = status;
    return false;
}

LineSettings Mbaxp::LineSettingsInForce() const {
    return {.device = deviceOfPort_(inForce_.portNumber),
            .bitsPerSecond = BitsPerSecond(inForce_.baudCode),
            .parity = ParityOf(inForce_.parityCode),
            .stopBits = inForce_.stopBitsCode == 1 ? QSerialPort::TwoStop : QSerialPort::OneStop};
}

QString Mbaxp::AboutText() {
    return QStringLiteral("Mbaxp\nModbus RTU master of ZTV Link\nVersion ") + ProgramVersion();
}

bool Mbaxp::OpenPort() {
    if (open_) {
        return Refuse(LinkStatus::AlreadyOpen);
    }
    if (settings_.lineModeA != 0 || settings_.lineModeB != 1) {
        return Refuse(LinkStatus::ProtocolModeRefused);
    }
    inForce_ = settings_;
    const std::int16_t status = line_.Open(LineSettingsInForce());
    if (status != LinkStatus::NoError) {
        return Refuse(status);
    }
    open_ = true;
    owed_.clear();
    doubtfulRuns_ = 0;
    usualDelayUs_.reset();
    holdOffEndUs_.reset();
    lastByteUs_ = NowUs();
    return true;
}

void Mbaxp::ClosePort() {
    wake_.stop();
    line_.Close();
    open_ = false;
    current_ = -1;
    onceQueue_.clear();
    for (Transaction &transaction : transactions_) {
        transaction.cyclic = false;
        transaction.once = false;
    }
}

bool Mbaxp::DefineReadRegisters(std::int16_t transaction, std::int16_t slave, std::int32_t start,
                                std::int32_t quantity, std::int32_t periodMs) {
    return Define(transaction, ModbusFrame::ReadHoldingRegisters, slave, start, quantity,
                  ModbusFrame::MostReadRegisters, periodMs);
}

bool Mbaxp::DefineWriteRegister(std::int16_t transaction, std::int16_t slave, std::int32_t address,
                                std::int32_t periodMs) {
    return Define(transaction, ModbusFrame::WriteSingleRegister, slave, address, 1, 1, periodMs);
}

bool Mbaxp::DefineWriteRegisters(std::int16_t transaction, std::int16_t slave, std::int32_t start,
                                 std::int32_t quantity, std::int32_t periodMs) {
    return Define(transaction, ModbusFrame::WriteMultipleRegisters, slave, start, quantity,
                  ModbusFrame::MostWrittenRegisters, periodMs);
}

bool Mbaxp::Define(std::int16_t number, std::uint8_t function, std::int32_t slave, std::int32_t address,
                   std::int32_t quantity, int mostRegisters, std::int32_t periodMs) {
    if (number < 0 || number >= TransactionCount) {
        return Refuse(LinkStatus::IndexError);
    }
    Transaction &transaction = transactions_[static_cast<std::size_t>(number)];
    const bool fits = slave >= 1 && slave <= highestSlave && quantity >= 1 && quantity <= mostRegisters &&
                      address >= 0 && address <= 0x10000 - quantity;
    if (!fits) {
        // What the number stood for before isn't wanted any more.
        transaction.request.quantity = 0;
        transaction.cyclic = false;
        transaction.once = transaction.once && current_ == number;
        std::erase(onceQueue_, number);
        return Refuse(LinkStatus::IndexError);
    }
    transaction.request = {.slave = static_cast<std::uint8_t>(slave),
                           .function = function,
                           .address = static_cast<std::uint16_t>(address),
                           .quantity = static_cast<std::uint16_t>(quantity),
                           .words = {}};
    transaction.buffer.resize(static_cast<std::size_t>(quantity)); // words that it has stay
    transaction.periodUs = std::max<qint64>(periodMs, 1) * 1000;
    return true;
}

bool Mbaxp::CanRun(std::int16_t number) {
    if (number < 0 || number >= TransactionCount) {
        return Refuse(LinkStatus::IndexError);
    }
    if (transactions_[static_cast<std::size_t>(number)].request.quantity == 0) {
        return Refuse(LinkStatus::DataNotInitialized);
    }
    return open_ || Refuse(LinkStatus::HandleError);
}

void Mbaxp::StartCyclic(std::int16_t number) {
    if (!CanRun(number)) {
        return;
    }
    Transaction &transaction = transactions_[static_cast<std::size_t>(number)];
    transaction.cyclic = true;
    transaction.dueUs = NowUs();
    if (current_ < 0) {
        PostStart();
    }
}

void Mbaxp::StopCyclic(std::int16_t number) {
    if (number >= 0 && number < TransactionCount) {
        transactions_[static_cast<std::size_t>(number)].cyclic = false;
    }
}

void Mbaxp::TriggerOnce(std::int16_t number) {
    if (!CanRun(number)) {
        return;
    }
    Transaction &transaction = transactions_[static_cast<std::size_t>(number)];
    if (!WaitsForItsOneRun(number)) {
        transaction.once = true;
        onceQueue_.push_back(number);
        if (current_ < 0) {
            PostStart();
        }
    }
}

// One that is on the line already doesn't: its request may be older than its definition.
bool Mbaxp::WaitsForItsOneRun(int number) const {
    return std::find(onceQueue_.begin(), onceQueue_.end(), number) != onceQueue_.end();
}

bool Mbaxp::TransactionBusy(std::int16_t number) const {
    if (number < 0 || number >= TransactionCount) {
        return false;
    }
    const Transaction &transaction = transactions_[static_cast<std::size_t>(number)];
    return transaction.cyclic || transaction.once;
}

std::int16_t Mbaxp::RegisterValue(std::int16_t number, std::int32_t index) const {
    if (number < 0 || number >= TransactionCount) {
        return 0;
    }
    const auto &buffer = transactions_[static_cast<std::size_t>(number)].buffer;
    return index >= 0 && static_cast<std::size_t>(index) < buffer.size()
               ? buffer[static_cast<std::size_t>(index)]
               : std::int16_t{0};
}

void Mbaxp::RegisterValue(std::int16_t number, std::int32_t index, std::int16_t word) {
    if (number < 0 || number >= TransactionCount || index < 0) {
        lastError_ = LinkStatus::IndexError;
        return;
    }
    auto &buffer = transactions_[static_cast<std::size_t>(number)].buffer;
    if (static_cast<std::size_t>(index) >= buffer.size()) {
        lastError_ = LinkStatus::IndexError;
        return;
    }
    buffer[static_cast<std::size_t>(index)] = word;
}

qint64 Mbaxp::LineTimeUs(qsizetype bytes) const {
    return ::LineTimeUs(
        {.baud = inForce_.baudCode, .parity = inForce_.parityCode, .stopBits = inForce_.stopBitsCode}, bytes);
}

qint64 Mbaxp::SilentIntervalUs() const {
    return BitsPerSecond(inForce_.baudCode) > 19200 ? 1750 : LineTimeUs(7) / 2; // 3.5 characters
}

void Mbaxp::WakeIn(qint64 microseconds) {
    const qint64 milliseconds = (std::max<qint64>(microseconds, 0) + 999) / 1000; // never too early
    wake_.start(static_cast<int>(milliseconds));
}

// Runs start from the event loop: none ends within the call that asked for it, and they go on while a
// handler keeps a box open. They come before what is to be painted: the line is slower than the screen.
void Mbaxp::PostStart() {
    if (!startPosted_) {
        startPosted_ = true;
        QCoreApplication::postEvent(this, new QEvent(startEvent), Qt::HighEventPriority);
    }
}

bool Mbaxp::event(QEvent *event) {
    if (event->type() != startEvent) {
        return QObject::event(event);
    }
    startPosted_ = false;
    StartNext();
    return true;
}

void Mbaxp::OnWake() {
    if (current_ >= 0) {
        OnDeadline();
    } else {
        StartNext();
    }
}

// The one-shot at the head of the queue and the cycle that is due first take turns where both wait.
int Mbaxp::NextTransaction(qint64 now, qint64 &earliestDue) const {
    int due = -1;
    earliestDue = -1;
    for (int number = 0; number < TransactionCount; ++number) {
        const Transaction &transaction = transactions_[static_cast<std::size_t>(number)];
        if (transaction.cyclic && (earliestDue < 0 || transaction.dueUs < earliestDue)) {
            earliestDue = transaction.dueUs;
            due = number;
        }
    }
    if (earliestDue > now) {
        due = -1;
    }
    const bool onceWaits = !onceQueue_.empty();
    return onceWaits && (due < 0 || !lastWasOnce_) ? onceQueue_.front() : due;
}

void Mbaxp::StartNext() {
    if (!open_ || current_ >= 0) {
        return;
    }
    const qint64 now = NowUs();
    qint64 earliestDue = -1;
    const int number = NextTransaction(now, earliestDue);
    if (number < 0) {
        holdOffEndUs_.reset();
        if (earliestDue >= 0) {
            WakeIn(earliestDue - now);
        }
        return;
    }
    const qint64 holdOff = HoldOffUs(number, now);
    if (holdOff > 0) {
        // A line that never falls silent mustn't keep a request waiting for good.
        if (!holdOffEndUs_) {
            holdOffEndUs_ = now + holdOff + TimeoutUs();
        }
        if (now < *holdOffEndUs_) {
            WakeIn(holdOff);
            return;
        }
    }
    holdOffEndUs_.reset();
    Start(number);
}

// How long the line must stay quiet before the next request: the silent interval behind the last byte; for
// a run that was triggered once also as long as a late reply is likely that would pass for its own. A cycle
// has that much time between its rounds, and keeps its period, unless one doubtful reply follows the other.
qint64 Mbaxp::HoldOffUs(int number, qint64 now) const {
    const Transaction &transaction = transactions_[static_cast<std::size_t>(number)];
    qint64 until = lastByteUs_ + SilentIntervalUs();
    for (const OwedReply &owed : owed_) {
        if (!RepliesLookAlike(owed.request, transaction.request)) {
            continue;
        }
        if (doubtfulRuns_ >= mostDoubtfulRuns) {
            until = std::max(until, owed.possibleUntilUs);
        } else if (transaction.once || !usualDelayUs_) {
            until = std::max(until, owed.likelyUntilUs);
        }
    }
    return until - now;
}

// Before it is known how soon the sensor answers, a run waits until a late reply isn't likely any more, and
// then trusts what comes.
void Mbaxp::DropOldDebts(qint64 now) {
    std::erase_if(owed_, [&](const OwedReply &owed) {
        return (usualDelayUs_ ? owed.possibleUntilUs : owed.likelyUntilUs) <= now;
    });
}

bool Mbaxp::IsOwedLike(const ModbusFrame::Request &request) const {
    return std::any_of(owed_.begin(), owed_.end(),
                       [&](const OwedReply &owed) { return RepliesLookAlike(owed.request, request); });
}

// Strikes off what a reply of that look has paid: a sensor answers in the order of the requests.
void Mbaxp::StrikeOffOldest(const ModbusFrame::Request &request) {
    const auto oldest = std::find_if(owed_.begin(), owed_.end(), [&](const OwedReply &owed) {
        return RepliesLookAlike(owed.request, request);
    });
    if (oldest != owed_.end()) {
        owed_.erase(oldest);
    }
}

// Takes what has come between two requests for the late replies that it is.
void Mbaxp::TakeLateReplies() {
    for (std::size_t k = 0; k < owed_.size();) {
        const ModbusFrame::Verdict verdict = ModbusFrame::Judge(owed_[k].request, received_);
        if (verdict.end > 0) {
            received_.remove(0, verdict.end);
            owed_.erase(owed_.begin() + static_cast<std::ptrdiff_t>(k));
        } else {
            ++k;
        }
    }
}

void Mbaxp::Start(int number) {
    Transaction &transaction = transactions_[static_cast<std::size_t>(number)];
    const qint64 now = NowUs();
    current_ = number;
    currentIsOnce_ = !onceQueue_.empty() && onceQueue_.front() == number;
    if (currentIsOnce_) {
        onceQueue_.pop_front();
    } else {
        // On its grid, but for a round that is late by more than a period: no two follow each other closely.
        transaction.dueUs += transaction.periodUs;
        if (transaction.dueUs <= now) {
            transaction.dueUs = now + transaction.periodUs;
        }
    }
    lastWasOnce_ = currentIsOnce_;
    DropOldDebts(now);
    request_ = transaction.request;
    if (request_.function != ModbusFrame::ReadHoldingRegisters) {
        request_.words = transaction.buffer;
    }
    received_.clear();
    replyHeld_ = false;
    firstByteUs_ = 0; // not known yet

    if (!line_.IsOpen() && line_.Open(LineSettingsInForce()) != LinkStatus::NoError) {
        FinishWith(LinkStatus::ReadError); // the device is still gone
        return;
    }
    line_.ClearInput();
    const QByteArray frame = ModbusFrame::Encode(request_);
    if (!line_.Write(frame)) {
        FinishWith(LinkStatus::WriteError);
        return;
    }
    const qint64 sent = NowUs();
    lastByteUs_ = sent + LineTimeUs(frame.size());
    deadlineUs_ = lastByteUs_ + TimeoutUs();
    WakeIn(deadlineUs_ - sent);
}

void Mbaxp::OnBytes() {
    const QByteArray bytes = line_.TakeInput();
    if (bytes.isEmpty()) {
        return;
    }
    const qint64 now = NowUs();
    if (received_.isEmpty()) {
        firstByteUs_ = now;
    }
    received_ = (received_ + bytes).right(mostReceivedBytes);
    lastByteUs_ = now;
    if (current_ < 0) {
        TakeLateReplies();
        StartNext(); // what waited for a late reply may go ahead
        return;
    }
    ModbusFrame::Verdict verdict = ModbusFrame::Judge(request_, received_);
    if (verdict.kind != ModbusFrame::Verdict::Kind::NeedMore && !replyHeld_ && MayBeLate()) {
        HoldReply(verdict);
        verdict = ModbusFrame::Judge(request_, received_);
    }
    if (verdict.kind != ModbusFrame::Verdict::Kind::NeedMore) {
        Finish(verdict);
    } else if (replyHeld_ && !received_.isEmpty()) {
        WakeIn(deadlineUs_ - now); // another reply has begun: it has until the deadline
    }
}

bool Mbaxp::MayBeLate() const {
    return usualDelayUs_ && IsOwedLike(request_) &&
           firstByteUs_ - RequestEndUs() > *usualDelayUs_ + unusualDelayUs + LineTimeUs(4);
}

// A reply that may be the late one of a request before is passed over: then its own follows right behind it.
void Mbaxp::HoldReply(const ModbusFrame::Verdict &verdict) {
    replyHeld_ = true;
    StrikeOffOldest(request_);
    received_.remove(0, verdict.end);
    WakeIn(std::min(ownReplyGapUs, deadlineUs_ - NowUs()));
}

void Mbaxp::OnDeadline() {
    // What has come but wasn't delivered while the screen was busy counts; how soon it came isn't known.
    received_ += line_.TakeAllInput();
    ModbusFrame::Verdict verdict = ModbusFrame::JudgeAtEnd(request_, received_);
    if (verdict.end > 0 && !replyHeld_ && IsOwedLike(request_)) {
        replyHeld_ = true;
        StrikeOffOldest(request_);
        received_.remove(0, verdict.end);
        verdict = ModbusFrame::JudgeAtEnd(request_, received_);
    }
    if (replyHeld_ && verdict.end == 0) {
        FinishWith(LinkStatus::Timeout); // the late one came alone
    } else {
        Finish(verdict);
    }
}

void Mbaxp::OnHungUp() {
    if (current_ >= 0) {
        FinishWith(LinkStatus::ReadError);
    }
}

void Mbaxp::FinishWith(std::int16_t status) {
    Finish({.kind = ModbusFrame::Verdict::Kind::Failed, .status = status, .words = {}, .end = 0});
}

void Mbaxp::Finish(const ModbusFrame::Verdict &verdict) {
    const auto number = static_cast<std::int16_t>(current_);
    Transaction &transaction = transactions_[static_cast<std::size_t>(number)];
    current_ = -1;
    if (currentIsOnce_) {
        transaction.once = WaitsForItsOneRun(number);
    }
    const bool done = verdict.kind == ModbusFrame::Verdict::Kind::Complete;
    if (done && firstByteUs_ > 0) {
        const qint64 usual = usualDelayUs_.value_or(0);
        usualDelayUs_ = std::max(firstByteUs_ - RequestEndUs(), usual - usual / 8);
    }
    doubtfulRuns_ = replyHeld_ && verdict.status == LinkStatus::Timeout ? doubtfulRuns_ + 1 : 0;
    if (done) {
        std::erase_if(owed_,
                      [this](const OwedReply &owed) { return RepliesLookAlike(owed.request, request_); });
    }
    if (verdict.status == LinkStatus::Timeout || verdict.stillOwed) {
        const qint64 likelyUntil = NowUs() + TimeoutUs();
        owed_.push_back({.request = request_,
                         .likelyUntilUs = likelyUntil,
                         .possibleUntilUs =
                             likelyUntil + std::min((owedForTimeouts - 1) * TimeoutUs(), owedForAtMostUs)});
    }
    if (done && request_.function == ModbusFrame::ReadHoldingRegisters &&
        transaction.buffer.size() == verdict.words.size()) {
        transaction.buffer = verdict.words;
    }
    wake_.stop();
    PostStart();
    if (done) {
        Q_EMIT TransactionDone(number);
    } else {
        Q_EMIT TransactionFailed(number, verdict.status);
    }
}

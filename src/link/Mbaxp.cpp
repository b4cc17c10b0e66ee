#include "link/Mbaxp.h"

#include "support/ProgramVersion.h"

#include <QCoreApplication>
#include <QEvent>
#include <algorithm>
#include <cmath>
#include <utility>

namespace ztv {

namespace {

constexpr QEvent::Type startEvent = QEvent::User;

constexpr int highestSlave = 247;
constexpr qsizetype mostReceivedBytes = 1024; // a babbling line mustn't fill the memory

constexpr qint64 ownReplyGapUs = 50'000; // a run's own reply follows a late one sooner than this

int NumberOf(LinkTransaction transaction) {
    return static_cast<int>(transaction);
}

LinkTransaction TransactionOf(int number) {
    return static_cast<LinkTransaction>(number);
}

bool IsNumber(int number) {
    return number >= 0 && number < Mbaxp::TransactionCount;
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

bool Mbaxp::Refuse(LinkStatus status) {
    lastError_ = status;
    return false;
}

LineSettings Mbaxp::LineSettingsInForce() const {
    return {.device = deviceOfPort_(inForce_.portNumber),
            .bitsPerSecond = BitsPerSecond(inForce_.line.baud),
            .parity = inForce_.line.parity,
            .stopBits = inForce_.line.stopBits};
}

QString Mbaxp::AboutText() {
    return QStringLiteral("Mbaxp\nModbus RTU master of ZTV Link\nVersion ") + ProgramVersion();
}

bool Mbaxp::OpenPort() {
    if (PortIsOpen()) {
        return Refuse(LinkStatus::AlreadyOpen);
    }
    if (settings_.lineModeA != 0 || settings_.lineModeB != 1) {
        return Refuse(LinkStatus::ProtocolModeRefused);
    }
    inForce_ = settings_;
    const LinkStatus status = line_.Open(LineSettingsInForce());
    if (status != LinkStatus::NoError) {
        return Refuse(status);
    }
    phase_ = Phase::Idle;
    lateReplies_.Clear();
    echo_.Clear();
    schedule_.PutRoundFirst(); // a read, which detects an echo
    holdOffEndUs_.reset();
    lastByteUs_ = NowUs();
    return true;
}

void Mbaxp::ClosePort() {
    wake_.stop();
    line_.Close();
    phase_ = Phase::Closed;
    schedule_.Clear();
}

bool Mbaxp::DefineReadRegisters(LinkTransaction transaction, std::int16_t slave, std::int32_t start,
                                std::int32_t quantity, std::int32_t periodMs) {
    return Define(NumberOf(transaction), ModbusFrame::ReadHoldingRegisters, slave, start, quantity,
                  ModbusFrame::MostReadRegisters, periodMs);
}

bool Mbaxp::DefineWriteRegister(LinkTransaction transaction, std::int16_t slave, std::int32_t address,
                                std::int32_t periodMs) {
    return Define(NumberOf(transaction), ModbusFrame::WriteSingleRegister, slave, address, 1, 1, periodMs);
}

bool Mbaxp::DefineWriteRegisters(LinkTransaction transaction, std::int16_t slave, std::int32_t start,
                                 std::int32_t quantity, std::int32_t periodMs) {
    return Define(NumberOf(transaction), ModbusFrame::WriteMultipleRegisters, slave, start, quantity,
                  ModbusFrame::MostWrittenRegisters, periodMs);
}

bool Mbaxp::Define(int number, std::uint8_t function, std::int32_t slave, std::int32_t address,
                   std::int32_t quantity, int mostRegisters, std::int32_t periodMs) {
    if (!IsNumber(number)) {
        return Refuse(LinkStatus::IndexError);
    }
    Transaction &transaction = At(number);
    const bool fits = slave >= 1 && slave <= highestSlave && quantity >= 1 && quantity <= mostRegisters &&
                      address >= 0 && address <= 0x10000 - quantity;
    if (!fits) {
        // The previous definition must not run any more.
        transaction.request.quantity = 0;
        schedule_.Withdraw(number);
        return Refuse(LinkStatus::IndexError);
    }
    transaction.request = {.slave = static_cast<std::uint8_t>(slave),
                           .function = function,
                           .address = static_cast<std::uint16_t>(address),
                           .quantity = static_cast<std::uint16_t>(quantity),
                           .words = {}};
    transaction.buffer.resize(static_cast<std::size_t>(quantity)); // existing words stay
    schedule_.PeriodUs(number, std::max<qint64>(periodMs, 1) * 1000);
    return true;
}

bool Mbaxp::CanRun(int number) {
    if (!IsNumber(number)) {
        return Refuse(LinkStatus::IndexError);
    }
    if (At(number).request.quantity == 0) {
        return Refuse(LinkStatus::DataNotInitialized);
    }
    return PortIsOpen() || Refuse(LinkStatus::HandleError);
}

void Mbaxp::StartCyclic(LinkTransaction transaction) {
    const int number = NumberOf(transaction);
    if (!CanRun(number)) {
        return;
    }
    schedule_.StartCycle(number, NowUs());
    if (phase_ != Phase::Exchange) {
        PostStart();
    }
}

void Mbaxp::StopCyclic(LinkTransaction transaction) {
    const int number = NumberOf(transaction);
    if (IsNumber(number)) {
        schedule_.StopCycle(number);
    }
}

void Mbaxp::TriggerOnce(LinkTransaction transaction) {
    const int number = NumberOf(transaction);
    if (!CanRun(number)) {
        return;
    }
    schedule_.QueueOnce(number);
    if (phase_ != Phase::Exchange) {
        PostStart();
    }
}

bool Mbaxp::TransactionBusy(LinkTransaction transaction) const {
    const int number = NumberOf(transaction);
    return IsNumber(number) && schedule_.IsBusy(number);
}

std::int16_t Mbaxp::RegisterValue(LinkTransaction transaction, std::int32_t index) const {
    const int number = NumberOf(transaction);
    if (!IsNumber(number)) {
        return 0;
    }
    const auto &buffer = At(number).buffer;
    return index >= 0 && static_cast<std::size_t>(index) < buffer.size()
               ? buffer[static_cast<std::size_t>(index)]
               : std::int16_t{0};
}

void Mbaxp::RegisterValue(LinkTransaction transaction, std::int32_t index, std::int16_t word) {
    const int number = NumberOf(transaction);
    if (!IsNumber(number) || index < 0) {
        lastError_ = LinkStatus::IndexError;
        return;
    }
    auto &buffer = At(number).buffer;
    if (static_cast<std::size_t>(index) >= buffer.size()) {
        lastError_ = LinkStatus::IndexError;
        return;
    }
    buffer[static_cast<std::size_t>(index)] = word;
}

qint64 Mbaxp::LineTimeUs(qsizetype bytes) const {
    return ztv::LineTimeUs(inForce_.line, bytes);
}

qint64 Mbaxp::SilentIntervalUs() const {
    return BitsPerSecond(inForce_.line.baud) > 19200 ? 1750 : LineTimeUs(7) / 2; // 3.5 characters
}

void Mbaxp::WakeIn(qint64 microseconds) {
    const qint64 milliseconds = (std::max<qint64>(microseconds, 0) + 999) / 1000; // never too early
    wake_.start(static_cast<int>(milliseconds));
}

// Starts runs from the event loop: none ends within the call that asked for it, and runs continue while a
// handler keeps a box open. A start precedes pending paint events: the line is slower than the screen.
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
    if (phase_ == Phase::Exchange) {
        OnDeadline();
    } else {
        StartNext();
    }
}

void Mbaxp::StartNext() {
    EndDelivery();
    if (phase_ != Phase::Idle) {
        return;
    }
    if (!line_.IsOpen()) {
        schedule_.PutRoundFirst(); // a read first as the device comes back, perhaps as another one
    }
    const qint64 now = NowUs();
    const qint64 early = lateReplies_.WantsMovedRound() ? LateReplies::MovedByUs : 0;
    const RunSchedule::Next round = schedule_.AskNextRound(now, early);
    RunSchedule::Next next = schedule_.AskNext(now, early);
    if (next.once && round.number && HoldOffUs(next, now) > HoldOffUs(round, now)) {
        next = round; // a one-shot that waits for a late reply doesn't delay a cycle
    }
    if (!next.number) {
        holdOffEndUs_.reset();
        if (next.askAgainUs) {
            WakeIn(*next.askAgainUs - now);
        }
        return;
    }
    const qint64 holdOff = HoldOffUs(next, now);
    if (holdOff > 0) {
        // A line that never falls silent must not delay a request forever.
        holdOffEndUs_ = holdOffEndUs_.value_or(now + std::max(holdOff, TimeoutUs()));
        if (now < *holdOffEndUs_) {
            const qint64 wakeUs = std::min(now + holdOff, *holdOffEndUs_);
            WakeIn(std::min(wakeUs, round.askAgainUs.value_or(wakeUs)) - now);
            return;
        }
    }
    holdOffEndUs_.reset();
    Start(next, !next.once && early > 0);
}

// Returns how long the line must still stay quiet before the next request: the silent interval after the last
// byte and, before a one-shot, the time in which late replies are likely.
qint64 Mbaxp::HoldOffUs(const RunSchedule::Next &next, qint64 now) const {
    const qint64 late = next.once ? lateReplies_.QuietUntilUs(At(*next.number).request) : 0;
    return std::max(lastByteUs_ + SilentIntervalUs(), late) - now;
}

void Mbaxp::Start(const RunSchedule::Next &next, bool moved) {
    const qint64 now = NowUs();
    const Transaction &transaction = At(*next.number);
    phase_ = Phase::Exchange;
    schedule_.Begin(next, now);
    exchange_ = {.transaction = *next.number, .request = transaction.request};
    if (exchange_.request.function != ModbusFrame::ReadHoldingRegisters) {
        exchange_.request.words = transaction.buffer;
    }
    lateReplies_.RunBegins(exchange_.request, now, moved);
    echo_.RunBegins(exchange_.request);

    if (!line_.IsOpen()) {
        if (line_.Open(LineSettingsInForce()) != LinkStatus::NoError) {
            FinishWith(LinkStatus::ReadError); // the device is still gone
            return;
        }
        echo_.DeviceReopened();
    }
    line_.ClearInput();
    const QByteArray frame = ModbusFrame::Encode(exchange_.request);
    if (!line_.Write(frame)) {
        FinishWith(LinkStatus::WriteError);
        return;
    }
    line_.ExpectInput(true);
    tap_.Report(LineFrame::Kind::Request, frame, CodeOf(LinkStatus::NoError),
                TransactionOf(exchange_.transaction));
    const qint64 sent = NowUs();
    lastByteUs_ = sent + LineTimeUs(frame.size());
    exchange_.deadlineUs = lastByteUs_ + TimeoutUs();
    WakeIn(exchange_.deadlineUs - sent);
}

void Mbaxp::OnBytes() {
    const QByteArray bytes = line_.TakeInput();
    if (bytes.isEmpty()) {
        return;
    }
    const qint64 now = NowUs();
    lastByteUs_ = now;
    if (exchange_.received.isEmpty()) {
        exchange_.firstByteUs = now;
    }
    exchange_.received = (exchange_.received + bytes).right(mostReceivedBytes);
    if (phase_ != Phase::Exchange) {
        tap_.Report(LineFrame::Kind::LateReply, bytes);
        lateReplies_.TakeFrom(exchange_.received);
        StartNext(); // a request that waited for a late reply may go ahead
        return;
    }
    TakeEcho(now);
    if (echo_.IsAwaited()) {
        return;
    }
    ModbusFrame::Verdict verdict = ModbusFrame::Judge(exchange_.request, exchange_.received);
    const bool isAnswer = verdict.kind != ModbusFrame::Verdict::Kind::NeedMore;
    if (isAnswer && MayBeLate()) {
        if (lateReplies_.IsLikelyOwn(ReplyDelayUs(), LineTimeUs(4))) {
            exchange_.likelyOwn = verdict;
        }
        SetAside(verdict);
        WakeIn(std::min(ownReplyGapUs, exchange_.deadlineUs - now));
        verdict = ModbusFrame::Judge(exchange_.request, exchange_.received);
    }
    if (verdict.kind != ModbusFrame::Verdict::Kind::NeedMore) {
        Finish(verdict);
    } else if (lateReplies_.HasSetAside() && !exchange_.received.isEmpty()) {
        WakeIn(exchange_.deadlineUs - now); // another reply has begun: it has until the deadline
    }
}

// Removes the adapter's copy of the request from the input. Bytes before the copy are late.
void Mbaxp::TakeEcho(std::optional<qint64> arrivedUs) {
    const qsizetype size = exchange_.received.size();
    QByteArray before = echo_.TakeFrom(exchange_.received);
    if (exchange_.received.size() == size) {
        return;
    }
    if (!before.isEmpty()) {
        tap_.Report(LineFrame::Kind::LateReply, before);
        lateReplies_.TakeFrom(before);
    }
    tap_.Report(LineFrame::Kind::Echo, ModbusFrame::Encode(exchange_.request));
    exchange_.firstByteUs = exchange_.received.isEmpty() ? std::nullopt : arrivedUs;
}

// From the request's end to the reply's first byte.
std::optional<qint64> Mbaxp::ReplyDelayUs() const {
    return exchange_.firstByteUs ? std::optional(*exchange_.firstByteUs - RequestEndUs()) : std::nullopt;
}

// Sets aside a reply that may belong to an earlier request and waits for another.
void Mbaxp::SetAside(const ModbusFrame::Verdict &verdict) {
    lateReplies_.SetAside(exchange_.request, ReplyDelayUs());
    exchange_.setAside = exchange_.received.first(verdict.end);
    exchange_.received.remove(0, verdict.end);
}

void Mbaxp::OnDeadline() {
    // Counts input that arrived but wasn't delivered while the screen was busy; its delay isn't known.
    exchange_.received += line_.TakeAllInput();
    TakeEcho(std::nullopt);
    ModbusFrame::Verdict verdict = ModbusFrame::JudgeAtEnd(exchange_.request, exchange_.received);
    if (verdict.end > 0 && MayBeLate()) {
        SetAside(verdict);
        verdict = ModbusFrame::JudgeAtEnd(exchange_.request, exchange_.received);
    }
    if (exchange_.likelyOwn && verdict.stillOwed) {
        exchange_.received.prepend(std::exchange(exchange_.setAside, {}));
        Finish(*std::exchange(exchange_.likelyOwn, std::nullopt));
    } else if (lateReplies_.HasSetAside() && verdict.end == 0) {
        FinishWith(LinkStatus::Timeout); // only the late reply arrived
    } else {
        Finish(verdict);
    }
}

void Mbaxp::OnHungUp() {
    Q_EMIT DeviceLost();
    if (phase_ == Phase::Exchange) {
        FinishWith(LinkStatus::ReadError);
    }
}

void Mbaxp::FinishWith(LinkStatus status) {
    Finish({.kind = ModbusFrame::Verdict::Kind::Failed, .status = status, .words = {}, .begin = 0, .end = 0});
}

void Mbaxp::Finish(const ModbusFrame::Verdict &verdict) {
    phase_ = Phase::Delivering;
    line_.ExpectInput(false);
    const LinkTransaction ended = TransactionOf(exchange_.transaction);
    const bool done = verdict.kind == ModbusFrame::Verdict::Kind::Complete;
    const bool deviceFailed =
        verdict.status == LinkStatus::ReadError || verdict.status == LinkStatus::WriteError;
    if (!deviceFailed) {
        echo_.RunEnded(verdict, exchange_.received);
    }
    if (done) {
        lateReplies_.Answered(exchange_.request, ReplyDelayUs());
    } else if (verdict.stillOwed || verdict.status == LinkStatus::Timeout) {
        lateReplies_.NotAnswered(exchange_.request, NowUs(), TimeoutUs());
    } else {
        lateReplies_.FailedOtherwise();
    }
    Transaction &transaction = At(exchange_.transaction);
    if (done && exchange_.request.function == ModbusFrame::ReadHoldingRegisters &&
        transaction.buffer.size() == verdict.words.size()) {
        transaction.buffer = verdict.words;
    }
    if (!exchange_.setAside.isEmpty()) {
        tap_.Report(LineFrame::Kind::LateReply, exchange_.setAside);
    }
    tap_.Report(LineFrame::Kind::Reply, exchange_.received, CodeOf(verdict.status), ended);
    wake_.stop();
    PostStart();
    if (done) {
        Q_EMIT TransactionDone(ended);
    } else {
        Q_EMIT TransactionFailed(ended, verdict.status);
    }
    EndDelivery();
}

// Ends the delivery of the last run's event: after its handlers, or as soon as one of them turns the event
// loop. Otherwise a handler that waits there for the transaction would wait forever.
void Mbaxp::EndDelivery() {
    if (phase_ == Phase::Delivering) {
        phase_ = Phase::Idle;
        schedule_.End();
    }
}

} // namespace ztv

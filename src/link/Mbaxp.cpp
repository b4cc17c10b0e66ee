#include "link/Mbaxp.h"

#include "link/LineCodes.h"
#include "link/LinkStatus.h"
#include "support/ProgramVersion.h"

#include <QCoreApplication>
#include <QEvent>
#include <algorithm>
#include <cmath>
#include <utility>

namespace {

constexpr QEvent::Type startEvent = QEvent::User;

constexpr int highestSlave = 247;
constexpr qsizetype mostReceivedBytes = 1024; // a babbling line mustn't fill the memory

constexpr qint64 ownReplyGapUs = 50'000; // behind a late reply, its own follows sooner than this

bool IsNumber(int transaction) {
    return transaction >= 0 && transaction < Mbaxp::TransactionCount;
}

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
    lateReplies_.Clear();
    holdOffEndUs_.reset();
    lastByteUs_ = NowUs();
    return true;
}

void Mbaxp::ClosePort() {
    wake_.stop();
    line_.Close();
    open_ = false;
    current_ = -1;
    schedule_.Clear();
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
    if (!IsNumber(number)) {
        return Refuse(LinkStatus::IndexError);
    }
    Transaction &transaction = At(number);
    const bool fits = slave >= 1 && slave <= highestSlave && quantity >= 1 && quantity <= mostRegisters &&
                      address >= 0 && address <= 0x10000 - quantity;
    if (!fits) {
        // What the number stood for before isn't wanted any more.
        transaction.request.quantity = 0;
        schedule_.Withdraw(number);
        return Refuse(LinkStatus::IndexError);
    }
    transaction.request = {.slave = static_cast<std::uint8_t>(slave),
                           .function = function,
                           .address = static_cast<std::uint16_t>(address),
                           .quantity = static_cast<std::uint16_t>(quantity),
                           .words = {}};
    transaction.buffer.resize(static_cast<std::size_t>(quantity)); // words that it has stay
    schedule_.PeriodUs(number, std::max<qint64>(periodMs, 1) * 1000);
    return true;
}

bool Mbaxp::CanRun(std::int16_t number) {
    if (!IsNumber(number)) {
        return Refuse(LinkStatus::IndexError);
    }
    if (At(number).request.quantity == 0) {
        return Refuse(LinkStatus::DataNotInitialized);
    }
    return open_ || Refuse(LinkStatus::HandleError);
}

void Mbaxp::StartCyclic(std::int16_t number) {
    if (!CanRun(number)) {
        return;
    }
    schedule_.StartCycle(number, NowUs());
    if (current_ < 0) {
        PostStart();
    }
}

void Mbaxp::StopCyclic(std::int16_t number) {
    if (IsNumber(number)) {
        schedule_.StopCycle(number);
    }
}

void Mbaxp::TriggerOnce(std::int16_t number) {
    if (!CanRun(number)) {
        return;
    }
    schedule_.QueueOnce(number);
    if (current_ < 0) {
        PostStart();
    }
}

bool Mbaxp::TransactionBusy(std::int16_t number) const {
    return IsNumber(number) && schedule_.IsBusy(number);
}

std::int16_t Mbaxp::RegisterValue(std::int16_t number, std::int32_t index) const {
    if (!IsNumber(number)) {
        return 0;
    }
    const auto &buffer = At(number).buffer;
    return index >= 0 && static_cast<std::size_t>(index) < buffer.size()
               ? buffer[static_cast<std::size_t>(index)]
               : std::int16_t{0};
}

void Mbaxp::RegisterValue(std::int16_t number, std::int32_t index, std::int16_t word) {
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

void Mbaxp::StartNext() {
    if (!open_ || current_ >= 0) {
        return;
    }
    const qint64 now = NowUs();
    const RunSchedule::Next next = schedule_.AskNext(now);
    if (!next.number) {
        holdOffEndUs_.reset();
        if (next.askAgainUs) {
            WakeIn(*next.askAgainUs - now);
        }
        return;
    }
    const qint64 holdOff = HoldOffUs(next, now);
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
    Start(next);
}

// How long the line must stay quiet before the next request: the silent interval behind the last byte, and
// for late replies.
qint64 Mbaxp::HoldOffUs(const RunSchedule::Next &next, qint64 now) const {
    return std::max(lastByteUs_ + SilentIntervalUs(),
                    lateReplies_.QuietUntilUs(At(*next.number).request, next.once)) -
           now;
}

void Mbaxp::Start(const RunSchedule::Next &next) {
    const qint64 now = NowUs();
    current_ = *next.number;
    schedule_.Begin(next, now);
    lateReplies_.RunBegins(now);
    request_ = At(current_).request;
    if (request_.function != ModbusFrame::ReadHoldingRegisters) {
        request_.words = At(current_).buffer;
    }
    received_.clear();
    firstByteUs_.reset();
    heldAsOwn_.reset();

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
        lateReplies_.TakeFrom(received_);
        StartNext(); // what waited for a late reply may go ahead
        return;
    }
    ModbusFrame::Verdict verdict = ModbusFrame::Judge(request_, received_);
    const bool isAnswer = verdict.kind != ModbusFrame::Verdict::Kind::NeedMore;
    if (isAnswer && !lateReplies_.HasPassedOver() && lateReplies_.IsOwed(request_)) {
        if (!lateReplies_.IsUnusual(*ReplyDelayUs(), LineTimeUs(4))) {
            heldAsOwn_ = verdict;
        }
        HoldReply(verdict);
        verdict = ModbusFrame::Judge(request_, received_);
    }
    if (verdict.kind != ModbusFrame::Verdict::Kind::NeedMore) {
        Finish(verdict);
    } else if (lateReplies_.HasPassedOver() && !received_.isEmpty()) {
        WakeIn(deadlineUs_ - now); // another reply has begun: it has until the deadline
    }
}

// From the request's end to the reply's first byte.
std::optional<qint64> Mbaxp::ReplyDelayUs() const {
    return firstByteUs_ ? std::optional(*firstByteUs_ - RequestEndUs()) : std::nullopt;
}

// A reply that may be the late one of a request before is passed over: then its own follows right behind it.
// One that came as soon as usual is taken if none follows.
void Mbaxp::HoldReply(const ModbusFrame::Verdict &verdict) {
    lateReplies_.PassOver(request_);
    received_.remove(0, verdict.end);
    WakeIn(std::min(ownReplyGapUs, deadlineUs_ - NowUs()));
}

void Mbaxp::OnDeadline() {
    // What has come but wasn't delivered while the screen was busy counts; how soon it came isn't known.
    received_ += line_.TakeAllInput();
    ModbusFrame::Verdict verdict = ModbusFrame::JudgeAtEnd(request_, received_);
    if (verdict.end > 0 && !lateReplies_.HasPassedOver() && lateReplies_.IsOwed(request_)) {
        lateReplies_.PassOver(request_);
        received_.remove(0, verdict.end);
        verdict = ModbusFrame::JudgeAtEnd(request_, received_);
    }
    if (heldAsOwn_ && verdict.stillOwed) {
        Finish(*std::exchange(heldAsOwn_, std::nullopt));
    } else if (lateReplies_.HasPassedOver() && verdict.end == 0) {
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
    current_ = -1;
    schedule_.End();
    const bool done = verdict.kind == ModbusFrame::Verdict::Kind::Complete;
    if (done) {
        lateReplies_.Answered(request_, ReplyDelayUs());
    } else if (verdict.stillOwed || verdict.status == LinkStatus::Timeout) {
        lateReplies_.NotAnswered(request_, NowUs(), TimeoutUs());
    } else {
        lateReplies_.FailedOtherwise();
    }
    Transaction &transaction = At(number);
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

#pragma once

#include "link/LateReplies.h"
#include "link/LineCodes.h"
#include "link/LineTap.h"
#include "link/LinkStatus.h"
#include "link/LinkTransaction.h"
#include "link/LocalEcho.h"
#include "link/ModbusFrame.h"
#include "link/RunSchedule.h"
#include "link/SerialLine.h"

#include <QByteArray>
#include <QElapsedTimer>
#include <QObject>
#include <QString>
#include <QTimer>
#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

namespace ztv {

// The Modbus RTU master. Transactions are defined by number, then run once or in a cycle in the
// background of the event loop; each run ends with exactly one of the two events.
//
// One request is on the line at a time. One-shot runs leave their queue first in, first out and alternate
// with the rounds of cycles, so that neither starves.
class Mbaxp : public QObject {
    Q_OBJECT

public:
    static constexpr int TransactionCount = RunSchedule::Count;

    // The component's name and version for its about box.
    static QString AboutText();

    // `deviceOfPort` returns the serial device of a port number.
    explicit Mbaxp(std::function<QString(std::int16_t)> deviceOfPort, QObject *parent = nullptr);

    // Settings; they take effect at the next OpenPort.
    void PortNumber(std::int16_t number) { settings_.portNumber = number; }
    std::int16_t PortNumber() const { return settings_.portNumber; }
    void BaudCode(std::int16_t code) { settings_.line.baud = code; }
    std::int16_t BaudCode() const { return settings_.line.baud; }
    void ParityCode(std::int16_t code) { settings_.line.parity = Parity{code}; }
    std::int16_t ParityCode() const { return static_cast<std::int16_t>(settings_.line.parity); }
    void StopBitsCode(std::int16_t code) { settings_.line.stopBits = StopBits{code}; }
    std::int16_t StopBitsCode() const { return static_cast<std::int16_t>(settings_.line.stopBits); }
    void ResponseTimeout(std::int16_t milliseconds) { settings_.responseTimeout = milliseconds; }
    std::int16_t ResponseTimeout() const { return settings_.responseTimeout; }
    // Together they select serial RTU with 8 data bits (0 and 1), the only supported mode.
    void LineModeA(std::int16_t mode) { settings_.lineModeA = mode; }
    void LineModeB(std::int16_t mode) { settings_.lineModeB = mode; }

    // Returns false when the port can't be opened; LastError is then the reason.
    bool OpenPort();

    // Ends every transaction without an event. Definitions survive.
    void ClosePort();

    // True from OpenPort to ClosePort, also while the port's device is gone.
    bool PortIsOpen() const { return phase_ != Phase::Closed; }

    // True where the adapter echoes what is sent. Detected at the first read after OpenPort.
    bool EchoIsPresent() const { return echo_.IsPresent(); }

    // The status of the last call that failed.
    LinkStatus LastError() const { return lastError_; }

    // Define the transaction of a number. Words of its buffer within the new quantity stay. Return false
    // (IndexError) for a number, slave, address or quantity out of range; the number's previous definition is
    // then dropped.
    bool DefineReadRegisters(LinkTransaction transaction, std::int16_t slave, std::int32_t start,
                             std::int32_t quantity, std::int32_t periodMs);
    bool DefineWriteRegister(LinkTransaction transaction, std::int16_t slave, std::int32_t address,
                             std::int32_t periodMs);
    bool DefineWriteRegisters(LinkTransaction transaction, std::int16_t slave, std::int32_t start,
                              std::int32_t quantity, std::int32_t periodMs);

    // Runs the transaction now and then every period, from start to start, until StopCyclic.
    void StartCyclic(LinkTransaction transaction);

    // A round in flight may still report.
    void StopCyclic(LinkTransaction transaction);

    // Runs the transaction one time. A transaction that already waits for its one run isn't queued again.
    void TriggerOnce(LinkTransaction transaction);

    // From TriggerOnce until its event has been delivered, and from StartCyclic until StopCyclic. An event
    // counts as delivered when its handlers return or turn the event loop.
    bool TransactionBusy(LinkTransaction transaction) const;

    // One word of the transaction's buffer. An index outside the buffer reads as 0.
    std::int16_t RegisterValue(LinkTransaction transaction, std::int32_t index) const;
    void RegisterValue(LinkTransaction transaction, std::int32_t index, std::int16_t word);

    // Reports each frame on the line.
    LineTap &Tap() { return tap_; }

    // One text that the component keeps for its user.
    QString Tag() const { return tag_; }
    void Tag(const QString &tag) { tag_ = tag; }

Q_SIGNALS:
    void TransactionDone(LinkTransaction transaction);
    void TransactionFailed(LinkTransaction transaction, LinkStatus status);
    void DeviceLost(); // at once, also between two runs; precedes the event of a run that it ends

protected:
    bool event(QEvent *event) override;

private:
    struct Settings {
        std::int16_t portNumber = 1;
        LineCodes line = {.baud = 8, .parity = Parity::None, .stopBits = StopBits::One};
        std::int16_t responseTimeout = 100;
        std::int16_t lineModeA = 0;
        std::int16_t lineModeB = 1;
    };

    struct Transaction {
        ModbusFrame::Request request; // quantity 0: not defined
        std::vector<std::int16_t> buffer;
    };

    enum class Phase {
        Closed,
        Idle,      // the port is open and no request on the line
        Exchange,  // a request is on the line
        Delivering // the event of the last run; no request is on the line
    };

    // One run of a transaction.
    struct Exchange {
        int transaction = 0;
        ModbusFrame::Request request = {};
        QByteArray received = {}; // between two runs: what has arrived since the last one
        qint64 deadlineUs = 0;
        std::optional<qint64> firstByteUs = {};             // of the reply, if the time is known
        QByteArray setAside = {};                           // a reply that may be a late one
        std::optional<ModbusFrame::Verdict> likelyOwn = {}; // its verdict, used if no other reply follows
    };

    bool Define(int number, std::uint8_t function, std::int32_t slave, std::int32_t address,
                std::int32_t quantity, int mostRegisters, std::int32_t periodMs);
    bool CanRun(int number);
    Transaction &At(int number) { return transactions_[static_cast<std::size_t>(number)]; }
    const Transaction &At(int number) const { return transactions_[static_cast<std::size_t>(number)]; }
    bool Refuse(LinkStatus status);
    LineSettings LineSettingsInForce() const;
    qint64 LineTimeUs(qsizetype bytes) const;
    qint64 SilentIntervalUs() const;

    void WakeIn(qint64 microseconds);
    void PostStart();
    void OnWake();
    void OnBytes();
    void OnHungUp();

    void StartNext();
    RunSchedule::Next AskNext(qint64 now) const;
    qint64 HoldOffUs(const RunSchedule::Next &next, qint64 now) const;
    void Start(const RunSchedule::Next &next, bool moved);
    void TakeEcho(std::optional<qint64> arrivedUs);
    std::optional<qint64> ReplyDelayUs() const;
    bool MayBeLate() const { return !lateReplies_.HasSetAside() && lateReplies_.IsOwed(exchange_.request); }
    void SetAside(const ModbusFrame::Verdict &verdict);
    void OnDeadline();
    void Finish(const ModbusFrame::Verdict &verdict);
    void FinishWith(LinkStatus status);
    void EndDelivery();
    qint64 NowUs() const { return clock_.nsecsElapsed() / 1000; }
    qint64 RequestEndUs() const { return exchange_.deadlineUs - TimeoutUs(); }
    qint64 TimeoutUs() const { return inForce_.responseTimeout * qint64{1000}; }

    std::function<QString(std::int16_t)> deviceOfPort_;
    Settings settings_;
    Settings inForce_;
    SerialLine line_;
    LineTap tap_;
    QTimer wake_; // the start of the next run while idle, the deadline while a request is on the line
    QElapsedTimer clock_;
    std::array<Transaction, TransactionCount> transactions_;
    RunSchedule schedule_;
    LateReplies lateReplies_;
    LocalEcho echo_;
    QString tag_;

    Phase phase_ = Phase::Closed;
    Exchange exchange_; // the one on the line, or else the last one
    bool startPosted_ = false;
    LinkStatus lastError_ = LinkStatus::NoError;
    qint64 lastByteUs_ = 0;
    std::optional<qint64> holdOffEndUs_; // while a request waits for silence
};

} // namespace ztv

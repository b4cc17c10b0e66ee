#include "link/LinkSession.h"

#include "link/FailureText.h"
#include "link/LineCodes.h"
#include "link/ParameterWord.h"
#include "link/SerialPorts.h"
#include "model/CheckedAt.h"
#include "model/Global.h"
#include "model/LineTables.h"
#include "model/ParamDefines.h"
#include "support/Numbers.h"

#include <QScopedValueRollback>
#include <algorithm>
#include <span>

namespace ztv {

namespace {

constexpr std::int16_t addressingMarkRegister = ParamDefines::AddressingMark;
constexpr std::int16_t addressingMark = ParamDefines::NumberedLikeParameters;

constexpr std::int16_t singleWritePeriodMs = 1000;
constexpr std::int16_t addressingProbePeriodMs = 500;
constexpr std::int16_t downloadPeriodMs = 4000;

const QString valuesHeldWord =
    QStringLiteral("Values aren't read since a file couldn't be opened: go offline and online");
const QString portNotReopenedWord =
    QStringLiteral("The port couldn't be opened again: changes stay in this program");

// True if a request was on the line. A sensor that rejects it has answered over a good line.
bool WasExchanged(LinkStatus status) {
    return status != LinkStatus::ReadError && status != LinkStatus::WriteError;
}
bool IsWholeReply(LinkStatus status) {
    return status <= LastException;
}

std::vector<bool> Settings(const ClassZentrova &zentrova) {
    std::vector<bool> settings;
    for (std::int16_t tag = 0; tag < zentrova.ParamCount(); ++tag) {
        settings.push_back(!zentrova.ParamReadOnly(tag) && !ClassZentrova::IsCommand(tag));
    }
    return settings;
}

} // namespace

LinkSession::LinkSession(ClassZentrova &zentrova, Dependencies dependencies, QObject *parent)
    : QObject(parent),
      zentrova_(zentrova),
      dependencies_(std::move(dependencies)),
      mbaxp1_(dependencies_.deviceOfPort),
      unsaved_(Settings(zentrova)),
      polled_(static_cast<std::size_t>(zentrova.ParamCount())) {
    // First, so that the count includes an exchange while its handlers run.
    connect(&mbaxp1_, &Mbaxp::TransactionDone, this, [this] { CountExchange(LinkStatus::NoError); });
    connect(&mbaxp1_, &Mbaxp::TransactionFailed, this,
            [this](LinkTransaction, LinkStatus status) { CountExchange(status); });
    connect(&mbaxp1_, &Mbaxp::TransactionDone, this, &LinkSession::TransactionDone);
    connect(&mbaxp1_, &Mbaxp::TransactionFailed, this, &LinkSession::TransactionFailed);
    connect(&mbaxp1_, &Mbaxp::DeviceLost, &values_, &ValueWatch::Lost);
    connect(&values_, &ValueWatch::Changed, this, &LinkSession::ValueStateChanged);
    zentrova_.ConnectTo(this);
}

LinkSession::~LinkSession() {
    zentrova_.ConnectTo(nullptr);
}

void LinkSession::SetMbaxp1CommProperties(std::int16_t port, std::int16_t baud, std::int16_t parityStop,
                                          std::int16_t timeoutMs) {
    mbaxp1_.PortNumber(port);
    mbaxp1_.LineModeB(1);
    mbaxp1_.LineModeA(0);
    const LineCodes codes = LineCodesOf(baud, parityStop);
    mbaxp1_.BaudCode(codes.baud);
    mbaxp1_.ParityCode(static_cast<std::int16_t>(codes.parity));
    mbaxp1_.StopBitsCode(static_cast<std::int16_t>(codes.stopBits));
    mbaxp1_.ResponseTimeout(
        timeoutMs != 0 ? timeoutMs : CheckedAt(BaudTable, baud, "ResponseTimeoutByBaud").responseTimeoutMs);
}

LinkSession::ConnectOutcome LinkSession::GoOnline(ConnectPrompt prompt) {
    if (prompt == ConnectPrompt::Ask) {
        const ConnectChoice choice = dependencies_.askDirection();
        if (choice != ConnectChoice::Read && choice != ConnectChoice::Write) {
            return ConnectOutcome::Cancelled;
        }
        downloadOnConnect_ = choice == ConnectChoice::Write;
    }
    if (!mbaxp1_.OpenPort()) {
        Q_EMIT PortRefused();
        return ConnectOutcome::PortRefused;
    }
    anotherSensor_ = false;
    quality_.Clear();
    unsaved_.WentOnline();
    sensor_.Outdate();
    zentrova_.ForgetPendingWrites(); // their outcomes were lost with the connection before
    mbaxp1_.DefineReadRegisters(LinkTransaction::AddressingProbe, comm_.address, addressingMarkRegister, 1,
                                addressingProbePeriodMs);
    mbaxp1_.StartCyclic(LinkTransaction::AddressingProbe);
    Q_EMIT OnlineChanged(true);
    firstReadPending_ = true;
    return ConnectOutcome::Probing;
}

QString LinkSession::OpenFailureText() const {
    const LinkStatus status = mbaxp1_.LastError();
    QString text = QStringLiteral("Error %1. %2").arg(CodeOf(status)).arg(MbaxpErrorDesc(status));
    const QString advice = SerialPorts::PermissionAdvice(dependencies_.deviceOfPort(mbaxp1_.PortNumber()));
    if (status == LinkStatus::OpenFailed && !advice.isEmpty()) {
        text += QStringLiteral("\n\n") + advice;
    }
    return text;
}

QString LinkSession::OpenFailureDetail() const {
    const std::int16_t number = mbaxp1_.PortNumber();
    const QString device = dependencies_.deviceOfPort(number);
    return FailureText::OfPort({.number = number,
                                .device = device,
                                .isThere = SerialPorts::IsThere(device),
                                .others = SerialPorts::DescribedDevices()});
}

// Deliberate: the pending marks of a download or write under way stay until the next connection begins.
void LinkSession::GoOffline() {
    mbaxp1_.StopCyclic(LinkTransaction::Poll);
    mbaxp1_.ClosePort();
    values_.Lost();
    zentrova_.SendWaitingWrites(); // drops them
    Q_EMIT OnlineChanged(false);
    SetStatus(QStringLiteral("Offline"));
}

void LinkSession::StartWrite(std::int16_t Tag, std::int32_t value) {
    LinkStatus status = LinkStatus::NoError;
    if (anotherSensor_) {
        status = LinkStatus::AnotherSensor;
    } else if (!mbaxp1_.DefineWriteRegister(LinkTransaction::SingleWrite, comm_.address,
                                            Tag - addressingMode_, singleWritePeriodMs)) {
        status = mbaxp1_.LastError(); // for example an invalid slave address
    }
    if (status != LinkStatus::NoError) {
        // Reported like any failed write, and asynchronously.
        rejectedWriteIsDue_ = true;
        QMetaObject::invokeMethod(
            this,
            [this, Tag, status] {
                rejectedWriteIsDue_ = false;
                WriteFailed(Tag, status);
            },
            Qt::QueuedConnection);
        return;
    }
    Q_EMIT AboutToWrite();
    mbaxp1_.RegisterValue(LinkTransaction::SingleWrite, 0, Global::SignedFromUnsigned(value));
    mbaxp1_.Tag(QString::number(Tag));
    mbaxp1_.TriggerOnce(LinkTransaction::SingleWrite);
}

std::int16_t LinkSession::WrittenParameter() const {
    return ToInt16(ToNumber(mbaxp1_.Tag()));
}

void LinkSession::TransactionDone(LinkTransaction transaction) {
    SetStatus(QStringLiteral(" Online"));
    switch (transaction) {
    case LinkTransaction::SingleWrite:
        WriteComplete();
        break;
    case LinkTransaction::Poll:
        PollComplete();
        break;
    case LinkTransaction::SearchProbe:
        Q_EMIT DeviceAnswered(LinkStatus::NoError);
        break;
    case LinkTransaction::AddressingProbe:
        AddressingProbeComplete();
        break;
    case LinkTransaction::Download:
        DownloadComplete();
        break;
    default:
        break;
    }
    Q_EMIT TableRefreshed();
}

void LinkSession::TransactionFailed(LinkTransaction transaction, LinkStatus status) {
    TakeUnconfirmed(transaction);
    if (transaction == LinkTransaction::SingleWrite) {
        WriteFailed(WrittenParameter(), status);
        return;
    }
    SetStatus(FailureText::WordsOf(status));
    switch (transaction) {
    case LinkTransaction::Poll:
        // Deliberate: no number of timeouts takes the link offline; past 32767 either count is a fault, which
        // ends the program.
        if (status == LinkStatus::Timeout) {
            timeoutCount_ = ToInt16(timeoutCount_ + 1);
        } else if (status == LinkStatus::CrcError) {
            crcErrorCount_ = ToInt16(crcErrorCount_ + 1);
        }
        break;
    case LinkTransaction::SearchProbe:
        Q_EMIT DeviceAnswered(status);
        break;
    case LinkTransaction::Download:
        DownloadFailed(status);
        break;
    default: // the addressing probe repeats by itself
        break;
    }
}

void LinkSession::CountExchange(LinkStatus status) {
    if (WasExchanged(status)) {
        quality_.Add(IsWholeReply(status));
    }
}

void LinkSession::ReportUnsaved(bool changed) {
    if (changed) {
        Q_EMIT UnsavedChanged();
    }
}

// Returns what the sensor was sent or has sent, which the table may have replaced meanwhile.
std::int32_t LinkSession::ValueOfWord(std::int16_t tag, LinkTransaction transaction,
                                      std::int32_t index) const {
    return ztv::ValueOfWord(zentrova_, tag, mbaxp1_.RegisterValue(transaction, index));
}

bool LinkSession::TakeConfirmed(std::int16_t tag) {
    const std::int32_t value = ValueOfWord(tag, LinkTransaction::SingleWrite, 0);
    switch (tag) {
    case ParamDefines::SaveCommand:
        return value == ParamDefines::StoreSettings && unsaved_.Saved();
    case ParamDefines::ReinitCommand:
        return value == ParamDefines::FactoryDefaults && unsaved_.Reinitialised();
    default:
        return unsaved_.Written(tag, value);
    }
}

bool LinkSession::TakeConfirmedDownload() {
    bool changed = false;
    for (std::int16_t tag = 1; tag < zentrova_.ParamCount(); ++tag) {
        changed = unsaved_.Written(tag, ValueOfWord(tag, LinkTransaction::Download, tag - 1)) || changed;
    }
    return changed;
}

void LinkSession::TakeUnconfirmed(LinkTransaction transaction) {
    if (transaction == LinkTransaction::SingleWrite) {
        const std::int16_t tag = WrittenParameter();
        unsaved_.NotConfirmed(tag, ValueOfWord(tag, transaction, 0));
    } else if (transaction == LinkTransaction::Download) {
        for (std::int16_t tag = 1; tag < zentrova_.ParamCount(); ++tag) {
            unsaved_.NotConfirmed(tag, ValueOfWord(tag, transaction, tag - 1));
        }
    }
}

bool LinkSession::TakePolledSettings() {
    for (std::int16_t tag = 1; tag < zentrova_.ParamCount(); ++tag) {
        polled_[static_cast<std::size_t>(tag)] =
            ValueOfWord(tag, LinkTransaction::Poll, tag - addressingMode_);
    }
    // Addressing mode 0 leaves the last row out of the poll.
    const std::size_t count = std::min(polled_.size(), polled_.size() - 1 + addressingMode_);
    return unsaved_.Polled(polled_.at(ParamDefines::SerialNumber), std::span(polled_).first(count));
}

// From the event loop, because the master reports the transaction busy until its event is delivered.
void LinkSession::SendNextWriteLater() {
    QMetaObject::invokeMethod(
        this, [this] { zentrova_.SendWaitingWrites(); }, Qt::QueuedConnection);
}

void LinkSession::WriteComplete() {
    const std::int16_t written = WrittenParameter();
    zentrova_.ParamWritePending(written, false);
    zentrova_.MarkWriteTaken(written);
    ReportUnsaved(TakeConfirmed(written));
    sensor_.Confirmed(written, zentrova_.SentValue(written));
    Q_EMIT WriteEnded(written, LinkStatus::NoError);
    switch (written) {
    case ParamDefines::NetworkAddress:
    case ParamDefines::BaudRateCode:
    case ParamDefines::ParityStopCode:
        ReconnectWithDeviceSettings();
        break;
    case ParamDefines::AddressingMode:
        TakeAddressingMode(ToUInt8(zentrova_.SentValue(ParamDefines::AddressingMode)));
        break;
    case ParamDefines::ReinitCommand:
        if (zentrova_.SentValue(ParamDefines::ReinitCommand) == ParamDefines::EnterBootLoader) {
            GoOffline();
        }
        break;
    default:
        break;
    }
    SendNextWriteLater(); // after a reconnect, so that it goes to the sensor's new settings
}

// Keeps the write under way until the handlers return: a write that is asked for behind the box of one of
// them could fail and open a second box over the first.
void LinkSession::WriteFailed(std::int16_t written, LinkStatus status) {
    SetStatus(FailureText::WordsOf(status));
    zentrova_.ParamWritePending(written, false);
    zentrova_.MarkWriteFailed(written);
    Q_EMIT WriteFailureMarked(written);
    {
        const QScopedValueRollback<bool> guard(reportsFailure_, true);
        Q_EMIT WriteEnded(written, status);
    }
    SendNextWriteLater();
}

void LinkSession::PollComplete() {
    // Another sensor may answer on the same port by now. If it numbers its registers differently, all its
    // values would be one row off.
    anotherSensor_ = AnswersWithAnotherAddressing();
    if (anotherSensor_) {
        HoldValues();
        SetStatus(FailureText::WordsOf(LinkStatus::AnotherSensor));
        return;
    }
    ReportUnsaved(TakePolledSettings());
    if (!zentrova_.WriteAllPending()) {
        TakePolledValues();
        values_.Polled();
    } else if (!mbaxp1_.TransactionBusy(LinkTransaction::Download)) {
        HoldValues();
        SetStatus(valuesHeldWord);
    }
    if (firstReadPending_) {
        firstReadPending_ = false;
        Q_EMIT FirstReadComplete();
    }
}

// A poll was answered, and its values aren't taken.
void LinkSession::HoldValues() {
    sensor_.Outdate();
    values_.Held();
}

bool LinkSession::AnswersWithAnotherAddressing() const {
    const bool hasMark =
        mbaxp1_.RegisterValue(LinkTransaction::Poll, addressingMarkRegister) == addressingMark;
    return addressingIsKnown_ && hasMark != (addressingMode_ == 0);
}

void LinkSession::TakeAddressingMode(std::uint8_t mode) {
    addressingMode_ = mode;
    addressingIsKnown_ = true;
}

void LinkSession::TakePolledValues() {
    sensor_.Polled(zentrova_.ParamCount(), [this](std::int16_t tag) {
        const std::int32_t value = polled_[static_cast<std::size_t>(tag)];
        if (!zentrova_.ParamWritePending(tag)) {
            zentrova_.ParamUpdate(tag, value);
        }
        return value;
    });
}

void LinkSession::AddressingProbeComplete() {
    mbaxp1_.StopCyclic(LinkTransaction::AddressingProbe);
    const std::int16_t mark = mbaxp1_.RegisterValue(LinkTransaction::AddressingProbe, 0);
    TakeAddressingMode(mark == addressingMark ? 0 : 1);
    DefinePoll();
    if (downloadOnConnect_) {
        DownloadTable();
    } else {
        mbaxp1_.StartCyclic(LinkTransaction::Poll);
    }
}

void LinkSession::DefinePoll() {
    const std::int16_t period = CheckedAt(BaudTable, comm_.baud, "PollPeriodByBaud").pollPeriodMs;
    mbaxp1_.DefineReadRegisters(LinkTransaction::Poll, comm_.address, 0, zentrova_.ParamCount() - 1, period);
    values_.PollPeriod(period);
}

void LinkSession::DownloadTable() {
    zentrova_.WriteAllPending(true);
    zentrova_.TakeWaitingValues();
    DefineDownload();
    for (std::int16_t tag = 1; tag < zentrova_.ParamCount(); ++tag) {
        DownloadValue(tag, zentrova_.ValueToDownload(tag));
    }
    StartDownload();
}

void LinkSession::DefineDownload() {
    mbaxp1_.DefineWriteRegisters(LinkTransaction::Download, comm_.address, 1 - addressingMode_,
                                 zentrova_.ParamCount() - 1, downloadPeriodMs);
}

void LinkSession::DownloadValue(std::int16_t Tag, std::int32_t value) {
    mbaxp1_.RegisterValue(LinkTransaction::Download, Tag - 1, Global::SignedFromUnsigned(value));
}

void LinkSession::StartDownload() {
    LinkStatus status = LinkStatus::NoError;
    if (anotherSensor_) {
        status = LinkStatus::AnotherSensor;
    } else {
        Q_EMIT AboutToWrite();
        sensor_.Outdate();
        mbaxp1_.TriggerOnce(LinkTransaction::Download);
        if (!mbaxp1_.TransactionBusy(LinkTransaction::Download)) { // refused, as a single write may be
            status = mbaxp1_.LastError();
        }
    }
    if (status != LinkStatus::NoError) {
        QMetaObject::invokeMethod(
            this, [this, status] { TransactionFailed(LinkTransaction::Download, status); },
            Qt::QueuedConnection);
    }
}

void LinkSession::DownloadComplete() {
    zentrova_.WriteAllPending(false);
    zentrova_.MarkDownloadTaken();
    ReportUnsaved(TakeConfirmedDownload());
    Q_EMIT DownloadEnded(LinkStatus::NoError);
    if (!mbaxp1_.PortIsOpen()) {
        downloadOnConnect_ = false;
        return; // a handler closed the link
    }
    // Deliberate: a poll that is started here ends at once with the reconnect.
    StartPollAfterConnectDownload();
    ReconnectWithDeviceSettings();
    TakeAddressingMode(ToUInt8(zentrova_.SentValue(ParamDefines::AddressingMode)));
    SendNextWriteLater(); // the reconnect has ended a write on the line without an event
}

void LinkSession::DownloadFailed(LinkStatus status) {
    zentrova_.WriteAllPending(false);
    Q_EMIT DownloadEnded(status);
    StartPollAfterConnectDownload();
}

void LinkSession::StartPollAfterConnectDownload() {
    if (downloadOnConnect_) {
        downloadOnConnect_ = false;
        mbaxp1_.StartCyclic(LinkTransaction::Poll);
    }
}

// Follows the sensor to the communication settings that it has just accepted.
void LinkSession::ReconnectWithDeviceSettings() {
    mbaxp1_.StopCyclic(LinkTransaction::Poll);
    mbaxp1_.ClosePort();
    comm_.baud = ToInt16(zentrova_.SentValue(ParamDefines::BaudRateCode));
    comm_.parityStop = ToInt16(zentrova_.SentValue(ParamDefines::ParityStopCode));
    comm_.address = ToInt16(zentrova_.SentValue(ParamDefines::NetworkAddress));
    DefinePoll();
    SetMbaxp1CommProperties(comm_.port, comm_.baud, comm_.parityStop, 0);
    anotherSensor_ = false;
    zentrova_.ForgetPendingWrites(); // their outcomes were lost with the port
    // Deliberate: no box, and the program stays in its online state.
    if (!mbaxp1_.OpenPort()) {
        values_.Lost();
        SetStatus(portNotReopenedWord);
    }
    mbaxp1_.StartCyclic(LinkTransaction::Poll);
}

void LinkSession::SetStatus(const QString &word) {
    Q_EMIT StatusChanged(QStringLiteral("Communication Status: ") + word);
}

} // namespace ztv

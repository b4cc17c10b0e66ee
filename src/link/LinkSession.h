#pragma once

#include "link/CommSettings.h"
#include "link/ConnectChoice.h"
#include "link/LineQuality.h"
#include "link/LinkStatus.h"
#include "link/LinkTransaction.h"
#include "link/Mbaxp.h"
#include "link/SensorValues.h"
#include "link/UnsavedWrites.h"
#include "link/ValueWatch.h"
#include "model/ClassZentrova.h"
#include "model/ParameterLink.h"
#include "model/ValueState.h"

#include <QObject>
#include <QString>
#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

namespace ztv {

// The link to the sensor: the communication settings, going online and offline, the probe, the download, the
// poll and single writes. The master's two events alone drive it.
class LinkSession : public QObject, public ParameterLink {
    Q_OBJECT

public:
    struct Dependencies {
        std::function<QString(std::int16_t)> deviceOfPort; // the serial device of a port number
        std::function<ConnectChoice()> askDirection;
    };

    LinkSession(ClassZentrova &zentrova, Dependencies dependencies, QObject *parent = nullptr);
    ~LinkSession() override;

    // Time-outs and CRC errors of the poll since the last reset. A count past 32767 is an overflow fault.
    std::int16_t TimeoutCount() const { return timeoutCount_; }
    void TimeoutCount(std::int16_t count) { timeoutCount_ = count; }
    std::int16_t CrcErrorCount() const { return crcErrorCount_; }
    void CrcErrorCount(std::int16_t count) { crcErrorCount_ = count; }

    // How the table's values relate to the sensor, and the time since a poll last filled the table; none if
    // the values are no sensor's. docs/master.md describes the states.
    ValueState State() const { return values_.State(); }
    std::optional<std::chrono::milliseconds> AgeOfValues() const { return values_.Age(); }
    std::optional<std::chrono::milliseconds> TimeBetweenPolls() const { return values_.TimeBetweenPolls(); }

    // The share of the last exchanges since going online that ended with a whole reply, also one that
    // rejects the request.
    const LineQuality &Quality() const { return quality_; }

    // The settings that the sensor forgets when it loses power.
    const UnsavedWrites &Unsaved() const { return unsaved_; }

    // The values that the sensor was last known to hold, which the table's may differ from.
    const SensorValues &Sensor() const { return sensor_; }
    const ClassZentrova &Table() const { return zentrova_; }

    // Subtracted from a parameter number to get its register address.
    std::uint8_t AddressingMode() const { return addressingMode_; }

    // The settings that the next connect uses.
    const CommSettings &Comm() const { return comm_; }
    void Comm(const CommSettings &settings) { comm_ = settings; }
    std::int16_t CommPort() const { return comm_.port; }
    void CommPort(std::int16_t number) { comm_.port = number; }
    std::int16_t BaudRate() const { return comm_.baud; } // an index, 0 to 4
    void BaudRate(std::int16_t index) { comm_.baud = index; }
    std::int16_t ParityStop() const { return comm_.parityStop; } // an index, 0 to 3
    void ParityStop(std::int16_t index) { comm_.parityStop = index; }
    std::int16_t ModbusAddress() const { return comm_.address; }
    void ModbusAddress(std::int16_t slave) { comm_.address = slave; }

    // The serial device of the port, as the next connect opens it.
    QString DeviceOfPort() const { return dependencies_.deviceOfPort(comm_.port); }

    // The master, for callers that drive transactions of their own.
    Mbaxp &Mbaxp1() { return mbaxp1_; }

    // Sets the line for the next opening of the port. `timeoutMs` 0 means the usual one for that baud
    // index. Fault (subscript) when that is asked for a baud index outside 0 to 4.
    void SetMbaxp1CommProperties(std::int16_t port, std::int16_t baud, std::int16_t parityStop,
                                 std::int16_t timeoutMs);

    // Describes why the last OpenPort failed: code, text, and advice where there is some.
    QString OpenFailureText() const;

    // Names the port, its device, and the devices that there are.
    QString OpenFailureDetail() const;

    // True where the adapter echoes what is sent; the copies are removed from the input. Known once a read
    // was answered.
    bool EchoIsPresent() const { return mbaxp1_.EchoIsPresent(); }

    // True while polls are answered by a sensor that numbers its registers differently; they are rejected.
    bool AnotherSensorAnswers() const { return anotherSensor_; }

    enum class ConnectOutcome { Cancelled, PortRefused, Probing };

    // Opens the port and starts to probe for the sensor. Without the prompt the direction stays the current
    // one.
    ConnectOutcome GoOnline(ConnectPrompt prompt);
    void GoOffline();
    // Makes the next connect read: drops a download that was asked for but never started, as no sensor
    // answered.
    void ReadOnConnect() { downloadOnConnect_ = false; }

    // ParameterLink
    bool PortIsOpen() const override { return mbaxp1_.PortIsOpen(); }
    bool WriteIsUnderWay() const override {
        return rejectedWriteIsDue_ || reportsFailure_ ||
               mbaxp1_.TransactionBusy(LinkTransaction::SingleWrite);
    }
    void StartWrite(std::int16_t Tag, std::int32_t value) override;
    void DefineDownload() override;
    void DownloadValue(std::int16_t Tag, std::int32_t value) override;
    void StartDownload() override;
    void TableLoaded() override { values_.Loaded(); }

    // Handlers of the master's events.
    void TransactionDone(LinkTransaction transaction);
    void TransactionFailed(LinkTransaction transaction, LinkStatus status);

Q_SIGNALS:
    void AboutToWrite();                       // before a write or download is handed to the master
    void WriteFailureMarked(std::int16_t tag); // in the table, before WriteEnded reports it

    // Report the outcome of a write or download. The session continues after the handlers return. A handler
    // may turn the event loop.
    void WriteEnded(std::int16_t tag, LinkStatus status);
    void DownloadEnded(LinkStatus status);
    void PortRefused(); // by GoOnline; OpenFailureText gives the reason

    void StatusChanged(const QString &text);  // the text of the status bar
    void OnlineChanged(bool online);          // the port was opened or closed
    void FirstReadComplete();                 // the first poll since going online is in the table
    void DeviceAnswered(LinkStatus status);   // the search probe ended
    void ValueStateChanged(ValueState state); // before the refresh of the poll that changed it
    void TableRefreshed();                    // after every good transaction: shown values may be outdated
    void UnsavedChanged();                    // before the WriteEnded or DownloadEnded that it comes with

private:
    void CountExchange(LinkStatus status);
    void ReportUnsaved(bool changed);
    std::int32_t ValueOfWord(std::int16_t tag, LinkTransaction transaction, std::int32_t index) const;
    bool TakeConfirmed(std::int16_t tag);
    bool TakeConfirmedDownload();
    void TakeUnconfirmed(LinkTransaction transaction);
    bool TakePolledSettings();
    void SendNextWriteLater();
    void WriteComplete();
    void WriteFailed(std::int16_t written, LinkStatus status);
    void PollComplete();
    void TakePolledValues();
    void HoldValues();
    bool AnswersWithAnotherAddressing() const;
    void TakeAddressingMode(std::uint8_t mode);
    void AddressingProbeComplete();
    void DownloadComplete();
    void DownloadFailed(LinkStatus status);
    void StartPollAfterConnectDownload();
    void DefinePoll();
    void DownloadTable();
    void ReconnectWithDeviceSettings();
    std::int16_t WrittenParameter() const;
    void SetStatus(const QString &word);

    ClassZentrova &zentrova_;
    Dependencies dependencies_;
    Mbaxp mbaxp1_;
    ValueWatch values_;
    LineQuality quality_;
    UnsavedWrites unsaved_;
    std::vector<std::int32_t> polled_; // the last poll's values by tag
    SensorValues sensor_;
    std::int16_t timeoutCount_ = 0;
    std::int16_t crcErrorCount_ = 0;
    CommSettings comm_;
    std::uint8_t addressingMode_ = 0;
    bool addressingIsKnown_ = false; // read from a sensor or written to one
    bool downloadOnConnect_ = false;
    bool firstReadPending_ = false;
    bool rejectedWriteIsDue_ = false; // the report of a write that the master rejected
    bool reportsFailure_ = false;     // a handler of WriteEnded may have a box open
    bool anotherSensor_ = false; // the last poll was answered by one that numbers its registers differently
};

} // namespace ztv

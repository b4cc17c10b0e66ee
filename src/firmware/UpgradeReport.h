#pragma once

#include "firmware/OneButtonUpgrade.h"
#include "firmware/UpgradeConsole.h"
#include "firmware/UpgradeVersions.h"

#include <QObject>
#include <QString>
#include <vector>

namespace ztv {

// A sentence about the sensor, and what to do next.
struct UpgradeNotice {
    enum class Tone { Quiet, Caution, Failure, Success };

    Tone tone = Tone::Quiet;
    QString text = {}; // empty: nothing to say
    // The sensor may wait in its boot loader with firmware that can be started.
    bool offersStart = false;

    bool operator==(const UpgradeNotice &) const = default;
};

// Says in words how it is with the sensor while its firmware is replaced and after that. A notice stays until
// the next command changes the state.
class UpgradeReport : public QObject {
    Q_OBJECT

public:
    // REQUIRES: all outlive the report. Created before whatever shows boxes for their outcomes, the report is
    // right while such a box is open.
    UpgradeReport(const UpgradeConsole &console, const OneButtonUpgrade &upgrade, UpgradeVersions &versions,
                  QObject *parent = nullptr);

    const UpgradeNotice &Notice() const { return notice_; }

    // Says what an upgrade would do without a good firmware file.
    static UpgradeNotice WithoutFirmware();

    // Ends the notice of a sensor that wasn't changed for want of a firmware file.
    void FirmwareIsThere();
    // Reports that an attempt to start the sensor found no boot loader.
    void NoLoaderToStart();

Q_SIGNALS:
    void NoticeChanged();

private:
    struct Transfer {
        UpgradeConsole::TransferKind kind;
        int erasesBefore;
    };

    void OnConnectedChanged(bool connected);
    void OnRunningChanged(bool running);
    void OnRunEnded(UpgradeOutcome outcome);
    void OnTransferStarted(UpgradeConsole::TransferKind kind);
    void OnTransferEnded(const ImageWritten &image);
    void OnRunAppEnded(UpgradeConsole::RunOutcome outcome);
    UpgradeNotice OfOutcome(UpgradeOutcome outcome) const;
    UpgradeNotice OfSuccess() const;
    UpgradeNotice OfBadFirmware() const;
    UpgradeNotice OfFailedTransfer(UpgradeConsole::TransferKind kind, TransferResult result) const;
    bool DeviceIsBeingWritten() const;
    void Show(const UpgradeNotice &notice);

    const OneButtonUpgrade &upgrade_;
    UpgradeVersions &versions_;
    UpgradeNotice notice_;
    std::vector<Transfer> transfers_; // the innermost last
    double done_ = 0;                 // of the innermost transfer
    int erases_ = 0;                  // begun
    int differingLines_ = 0;          // of the last write
    bool connected_ = false;
    bool incomplete_ = false; // the sensor is known to lack complete firmware
};

} // namespace ztv

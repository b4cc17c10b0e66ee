#pragma once

#include "cli/CommandRun.h"
#include "cli/ImageFolder.h"
#include "firmware/OneButtonUpgrade.h"
#include "firmware/UpgradeConsole.h"

#include <QElapsedTimer>
#include <QObject>
#include <QString>
#include <QStringList>
#include <cstdint>

namespace ztv {

// How it is with a sensor after an attempt to replace its firmware.
enum class SensorState {
    Unchanged,     // it runs
    MayBeInLoader, // with its firmware unchanged
    InLoader,      // with its firmware unchanged
    Incomplete,    // in its loader, without complete firmware
    Written,       // in its loader, with the new firmware
    Restarted      // with the new firmware
};

struct UpgradeResult {
    UpgradeOutcome outcome = UpgradeOutcome::Aborted;
    SensorState state = SensorState::Unchanged;
    bool refused = false;     // the command that starts the loader
    bool otherLoader = false; // another sensor on the line waits in its loader
    UpgradeConsole::TransferKind transfer = UpgradeConsole::TransferKind::Erase; // the last
    TransferResult transferResult = TransferResult::Finished;
    double transferDone = 0; // 0 to 1
    QStringList differing;   // the lines that the sensor holds otherwise
    QString fault;           // of a file
};

// Replaces the firmware of a sensor by the one-button upgrade, and shows the progress.
class SensorUpgrade : public QObject {
    Q_OBJECT

public:
    // `isRunning`: the sensor answers as a sensor, not as a boot loader.
    // REQUIRES: the port is closed; `run` outlives this.
    SensorUpgrade(CommandRun &run, std::int16_t address, bool isRunning);

    // A signal ends it in good order.
    UpgradeResult Run(const QString &firmwareFile);

    // Returns whether a boot loader answers on the line. Throws a Failure (no connection).
    static bool LoaderAnswers(CommandRun &run);

private:
    void FollowLink();
    void FollowConsole();
    void OnConnected();
    void OnWritten(const ImageWritten &image);
    void StartStep(const QString &name);
    void Advance(double done);
    void Show(const QString &progress);

    CommandRun &run_;
    bool isRunning_;
    QString prefix_; // of a step, where there are several sensors
    ImageFolder folder_;
    LinkSession link_;
    BootComm boot_;
    UpgradeConsole console_;
    OneButtonUpgrade upgrade_;
    UpgradeResult result_;
    bool isCommanded_ = false;   // to start its loader
    bool isUnconfirmed_ = false; // that command
    QString step_;
    QElapsedTimer stepTime_;
    QString shown_;
};

} // namespace ztv

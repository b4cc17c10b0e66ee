#pragma once

#include "firmware/UpgradeConsole.h"
#include "link/LinkSession.h"
#include "model/ClassZentrova.h"

#include <QObject>
#include <QString>
#include <QTimer>
#include <functional>
#include <optional>
#include <utility>

namespace ztv {

// The outcome of an upgrade.
enum class UpgradeOutcome {
    Upgraded = 0,

    // The sensor didn't enter its boot loader. The user sees these values as numbers.
    NotPolled = 1,         // the link didn't reach the poll
    CommandUnanswered = 2, // the command that restarts the sensor
    PortNotReleased = 3,   // the link didn't close after that command
    LoaderNotFound = 4,

    BadFirmware, // the file is missing or invalid; nothing was erased
    Aborted,
    EraseFailed,
    WriteFailed, // or verification, or the image changed meanwhile
    RunModeFailed,
    StillInLoader, // after every reset
    AlreadyRunning // another call of Run; this one did nothing
};

// The whole upgrade of a sensor: makes the running sensor enter its boot loader over Modbus, passes the port
// to the boot link, replaces the program and starts it.
class OneButtonUpgrade : public QObject {
    Q_OBJECT

public:
    OneButtonUpgrade(UpgradeConsole &console, LinkSession &link, ClassZentrova &zentrova,
                     QObject *parent = nullptr);

    bool Running() const { return running_; }
    // True when the present or last run put a running sensor into its boot loader.
    bool SensorWasRunning() const { return sensorWasRunning_; }

    // Has a run end as aborted before its next step that changes the sensor once `wanted` returns true. The
    // command that starts the boot loader is settled first, and a program that is written whole is started.
    void StopWhen(std::function<bool()> wanted) { stopIsWanted_ = std::move(wanted); }

    // Runs the whole upgrade, a minute or more, and processes events meanwhile. The port of the boot link
    // stays open. Fault when an image can't be opened or created.
    UpgradeOutcome Run(const QString &firmwareFile);

Q_SIGNALS:
    void RunningChanged(bool running);
    // Reports the outcome of Run, which finishes after the handlers return. A handler may turn the event
    // loop.
    void Ended(UpgradeOutcome outcome);

private:
    // A failure, or nothing.
    using Failure = std::optional<UpgradeOutcome>;

    UpgradeOutcome Upgrade(const QString &firmwareFile);
    Failure EnterBootLoader(const QString &firmwareFile);
    Failure ReplaceProgram();
    bool Restart();
    bool WaitWhile(const std::function<bool()> &condition);

    UpgradeConsole &console_;
    LinkSession &link_;
    ClassZentrova &zentrova_;
    QTimer *timerTimeout_;
    std::function<bool()> stopIsWanted_ = [] { return false; };
    bool running_ = false;
    bool sensorWasRunning_ = false;
};

} // namespace ztv

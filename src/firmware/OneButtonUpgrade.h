#pragma once

#include "firmware/UpgradeConsole.h"
#include "link/LinkSession.h"
#include "model/ClassZentrova.h"

#include <QObject>
#include <QString>
#include <QTimer>
#include <functional>
#include <optional>

// How an upgrade ended.
enum class UpgradeOutcome {
    Upgraded = 0,

    // The sensor didn't get into its boot loader. The values are the numbers that the user is told.
    NotPolled = 1,         // the link didn't get as far as the poll
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

// The whole upgrade of a sensor: talks the running one into its boot loader over Modbus, hands the port over,
// replaces the program and starts it.
class OneButtonUpgrade : public QObject {
    Q_OBJECT

public:
    OneButtonUpgrade(UpgradeConsole &console, LinkSession &link, ClassZentrova &zentrova,
                     QObject *parent = nullptr);

    bool Running() const { return running_; }

    // Runs to the end, while events run: a minute and more. The port of the boot link stays held. Fault when
    // an image can't be opened or created.
    UpgradeOutcome Run(const QString &firmwareFile);

Q_SIGNALS:
    void RunningChanged(bool running);
    // The outcome of Run, which finishes once the handlers return. They may turn the event loop.
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
    bool running_ = false;
};

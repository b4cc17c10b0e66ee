#pragma once

#include "firmware/UpgradeConsole.h"
#include "link/LinkSession.h"
#include "model/ClassZentrova.h"

#include <QObject>
#include <QString>
#include <QTimer>
#include <functional>

// The whole upgrade of a sensor: talks the running one into its boot loader over Modbus, hands the port over,
// replaces the program and starts it.
class OneButtonUpgrade : public QObject {
    Q_OBJECT

public:
    OneButtonUpgrade(UpgradeConsole &console, LinkSession &link, ClassZentrova &zentrova,
                     UserDialogs &dialogs, QObject *parent = nullptr);

    bool Running() const { return running_; }

    // Asks, then runs to the end, while events run: a minute and more. The port of the boot link stays held.
    // Fault when an image can't be opened or created.
    void Run(const QString &firmwareFile);

Q_SIGNALS:
    void RunningChanged(bool running);

private:
    void Upgrade(const QString &firmwareFile);
    bool EnterBootLoader(const QString &firmwareFile);
    bool Restart();
    bool WaitWhile(const std::function<bool()> &condition);
    void ShowFailure(int step);

    UpgradeConsole &console_;
    LinkSession &link_;
    ClassZentrova &zentrova_;
    UserDialogs &dialogs_;
    QTimer *timerTimeout_;
    bool running_ = false;
};

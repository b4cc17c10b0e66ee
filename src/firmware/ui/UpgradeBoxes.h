#pragma once

#include "firmware/OneButtonUpgrade.h"
#include "firmware/UpgradeConsole.h"
#include "support/UserDialogs.h"

#include <QObject>
#include <optional>

namespace ztv {

// The boxes and file dialogs of the upgrade window: the questions before a command, and the outcomes. Shows
// the box of an outcome within the signal that reports it, before the command continues.
class UpgradeBoxes : public QObject {
    Q_OBJECT

public:
    // All arguments outlive the boxes.
    UpgradeBoxes(const UpgradeConsole &console, const OneButtonUpgrade &upgrade, UserDialogs &dialogs,
                 QObject *parent = nullptr);

    bool ConfirmUpgrade();
    bool ConfirmRunApp();
    // Return nothing when the user cancels.
    std::optional<QString> AskForHexFileToOpen();
    std::optional<QString> AskForFirmwareFile(const QString &present);
    std::optional<QString> AskForHexFileToSave();
    void ShowIsMemoryImage(const QString &fileName);

private:
    void OnConnectFaulted(const QString &word);
    void OnEditorMissing(const QString &fileName);
    void OnRunAppFailed(UpgradeConsole::RunOutcome outcome);
    void OnUpgradeEnded(UpgradeOutcome outcome);

    UserDialogs &dialogs_;
};

} // namespace ztv

#pragma once

#include "firmware/BootComm.h"
#include "support/UserDialogs.h"

#include <QObject>
#include <QString>
#include <cstdint>
#include <functional>

// The commands of the upgrade console with the words that they show, but for the window. A transfer lets
// events run once a round, and a further command may start then; all share one flag that aborts.
class UpgradeConsole : public QObject {
    Q_OBJECT

public:
    struct Surroundings {
        UserDialogs &dialogs;
        // Shows a file in a text editor, `command` if that is there. False when there is none.
        std::function<bool(const QString &command, const QString &fileName)> showInEditor;
    };

    // The panels of the status bar.
    enum class Panel { Status = 1, Version, Processor, ComPort, BaudRate };

    UpgradeConsole(BootComm &bootComm, Surroundings surroundings, QObject *parent = nullptr);
    ~UpgradeConsole() override;

    // Fills the settings anew but for the port's handle. The images lie in `imageFolder`.
    void Load(std::int16_t commPort, std::int32_t bitRate, const QString &imageFolder);

    // True when a boot loader answers; the device's commands are then there.
    bool ConnectBootloader();
    void DisconnectBootloader();
    // Whether the last connect got as far as the open port.
    bool PortWasOpened() const { return portWasOpened_; }

    // Transfers. Fault when an image can't be opened or created.
    void ReadDevice();
    bool EraseDevice();
    bool WriteDevice();
    void Abort();

    // The hex file at the path, or one that the user is asked for if it is empty, becomes the memory images.
    bool OpenHexFile(const QString &path);
    // Looks at the hex file and touches nothing. False, with its word, when it is missing or invalid.
    bool CheckHexFile(const QString &path);
    void SaveHexFile();
    void EraseFiles();
    void ViewFiles();

    bool RunModeCommand();
    void RunApp();

    BootComm &Boot() { return bootComm_; }
    // The tool tip is what else there is to say, if anything.
    void SetStatus(const QString &word, const QString &toolTip = {});

Q_SIGNALS:
    void PanelChanged(UpgradeConsole::Panel panel, const QString &text, const QString &toolTip = {});
    void PointerChanged(Qt::CursorShape shape);
    void ConnectedChanged(bool connected);
    void RedrawWanted();
    void TransferStarted(const QString &what);
    void TransferAdvanced(double done); // of the whole, 0 to 1
    void TransferEnded();

private:
    class Transfer;

    // The running loop's share of its whole transfer.
    struct Share {
        double before = 0;
        double size = 1;
    };

    bool FindDevice();
    void ShowImported(std::int16_t result);
    bool ShowOutcome(std::int16_t result, const QString &failed);
    bool ShowInEditor(const QString &fileName);
    void Warn(const QString &text, const QString &title);

    BootComm &bootComm_;
    BootSettings &settings_;
    Surroundings surroundings_;
    Share share_;
    bool portWasOpened_ = false;
};

#pragma once

#include "firmware/BootComm.h"

#include <QObject>
#include <QString>
#include <cstdint>
#include <functional>

// The commands of the upgrade console with their status words, but for the window: it asks before a command
// and shows boxes for outcomes. A transfer lets events run once a round, and a further command may start
// then; all share one flag that aborts.
class UpgradeConsole : public QObject {
    Q_OBJECT

public:
    struct Dependencies {
        // Shows a file in a text editor, `command` if that is there. False when there is none.
        std::function<bool(const QString &command, const QString &fileName)> showInEditor;
    };

    // The panels of the status bar.
    enum class Panel { Status = 1, Version, Processor, ComPort, BaudRate };

    enum class ConnectOutcome { Connected, PortRefused, NoLoader, Faulted };
    enum class HexFileOutcome { Good, NotFound, NotPadded, Invalid };
    enum class RunOutcome { Started, RunModeFailed, ResetFailed };

    UpgradeConsole(BootComm &bootComm, Dependencies dependencies, QObject *parent = nullptr);
    ~UpgradeConsole() override;

    // Fills the settings anew but for the port's handle. The images lie in `imageFolder`.
    void Load(std::int16_t commPort, std::int32_t bitRate, const QString &imageFolder);

    // The device's commands are there once it is connected.
    ConnectOutcome ConnectBootloader();
    void DisconnectBootloader();
    // Whether the last connect got as far as the open port.
    bool PortWasOpened() const { return portWasOpened_; }

    // Transfers. Fault when an image can't be opened or created.
    TransferResult ReadDevice(); // of the first region that failed, if one did
    TransferResult EraseDevice();
    ImageWritten WriteDevice(); // shows the lines that differ if the last one does
    void Abort();

    // Makes the memory images anew from the hex file. Fault when it can't be opened.
    HexFileOutcome ImportHexFile(const QString &path);
    // The same, but a file that isn't there is NotFound, without a word.
    HexFileOutcome OpenHexFile(const QString &path);
    // Looks at the hex file and touches nothing. Shows the word of one that isn't good.
    HexFileOutcome CheckHexFile(const QString &path);
    // False, with nothing done, for the path of a memory image: the hex file would replace it.
    bool SaveHexFile(const QString &path);
    void EraseFiles();
    void ViewFiles();

    bool RunModeCommand();
    RunOutcome RunApp();

    BootComm &Boot() { return bootComm_; }
    // The tool tip is what else there is to say, if anything.
    void SetStatus(const QString &word, const QString &toolTip = {});

Q_SIGNALS:
    // Outcomes within a command, which goes on once the handlers return. They may turn the event loop.
    void ConnectFaulted(const QString &word); // the status word, which tells the fault
    void EditorMissing(const QString &fileName);
    void RunAppFailed(UpgradeConsole::RunOutcome outcome);

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
    HexFileOutcome ShowHexFileWord(std::int16_t result);
    void ShowOutcome(TransferResult result, const QString &failed);
    bool ShowInEditor(const QString &fileName);

    BootComm &bootComm_;
    BootSettings &settings_;
    Dependencies dependencies_;
    Share share_;
    bool portWasOpened_ = false;
};

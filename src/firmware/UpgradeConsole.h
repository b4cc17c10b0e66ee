#pragma once

#include "firmware/BootComm.h"
#include "firmware/HexFileAccess.h"

#include <QObject>
#include <QString>
#include <cstdint>
#include <functional>

namespace ztv {

// The commands of the upgrade console and their status words, without the window, which asks before a command
// and shows boxes for outcomes. A transfer processes events once a round, and another command may start then;
// all commands share one flag that aborts.
class UpgradeConsole : public QObject {
    Q_OBJECT

public:
    struct Dependencies {
        // Shows a file in a text editor, preferably `command`. Returns false when there is none.
        std::function<bool(const QString &command, const QString &fileName)> showInEditor;
    };

    enum class TransferKind { Read, Erase, Write };

    // The panels of the status bar.
    enum class Panel { Status = 1, Version, Processor, ComPort, BaudRate };

    enum class ConnectOutcome { Connected, PortRefused, NoLoader, Faulted };
    enum class HexFileOutcome { Good, NotFound, NotPadded, Invalid };
    enum class RunOutcome { Started, RunModeFailed, ResetFailed };

    UpgradeConsole(BootComm &bootComm, Dependencies dependencies, QObject *parent = nullptr);
    ~UpgradeConsole() override;

    // Resets the settings except for the port's handle. The images are in `imageFolder`.
    void Load(std::int16_t commPort, std::int32_t bitRate, const QString &imageFolder);

    // Opens the port and searches for a boot loader. The device's commands are available once it is
    // connected.
    ConnectOutcome ConnectBootloader();
    void DisconnectBootloader();
    // True when the last connect opened the port.
    bool PortWasOpened() const { return portWasOpened_; }

    // Transfers. Fault when an image can't be opened or created.
    TransferResult ReadDevice(); // the result of the first region that failed, if any
    TransferResult EraseDevice();
    ImageWritten WriteDevice(); // shows the lines that differed if the last line did
    void Abort();

    // Replaces the memory images from the hex file. Fault when it can't be opened.
    HexFileOutcome ImportHexFile(const QString &path);
    // The same, but returns NotFound, without a status word, for a file that doesn't exist.
    HexFileOutcome OpenHexFile(const QString &path);
    // Checks the hex file and changes nothing. Shows a status word for a file that isn't good.
    HexFileOutcome CheckHexFile(const QString &path);
    // Exports to the hex file. Does nothing and returns false for the path of a memory image, which the hex
    // file would replace.
    bool SaveHexFile(const QString &path);
    void EraseFiles();
    void ViewFiles();

    bool RunModeCommand();
    RunOutcome RunApp();

    BootComm &Boot() { return bootComm_; }
    // `toolTip`: a further explanation, if any.
    void SetStatus(const QString &word, const QString &toolTip = {});

Q_SIGNALS:
    // Report outcomes within a command, which continues after the handlers return. A handler may turn the
    // event loop.
    void ConnectFaulted(const QString &word); // the status word, which describes the fault
    void EditorMissing(const QString &fileName);
    void RunAppFailed(UpgradeConsole::RunOutcome outcome);
    void RunAppEnded(UpgradeConsole::RunOutcome outcome); // after everything else, also of a success

    void PanelChanged(UpgradeConsole::Panel panel, const QString &text, const QString &toolTip = {});
    void PointerChanged(Qt::CursorShape shape);
    void ConnectedChanged(bool connected);
    void RedrawWanted();
    void TransferStarted(const QString &what,
                         UpgradeConsole::TransferKind kind = UpgradeConsole::TransferKind::Write);
    void TransferAdvanced(double done); // of the whole, 0 to 1
    // `image`: the result, and how many lines differed in a write.
    void TransferEnded(const ImageWritten &image = {});

private:
    class Transfer;

    // The running loop's share of its whole transfer.
    struct Share {
        double before = 0;
        double size = 1;
    };

    bool FindDevice();
    RunOutcome StartApplication();
    HexFileOutcome ShowHexFileWord(HexFileAccess::Result result);
    void ShowOutcome(TransferResult result, const QString &failed);
    bool ShowInEditor(const QString &fileName);

    BootComm &bootComm_;
    BootSettings &settings_;
    Dependencies dependencies_;
    Share share_;
    bool portWasOpened_ = false;
};

} // namespace ztv

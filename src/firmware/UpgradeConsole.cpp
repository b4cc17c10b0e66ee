#include "firmware/UpgradeConsole.h"

#include "firmware/TextFileWriter.h"
#include "support/Fault.h"
#include "support/FileFunctions.h"

#include <QCoreApplication>
#include <QDir>
#include <QScopeGuard>
#include <QScopedValueRollback>

namespace ztv {

// Shows the busy pointer and the transfer during its lifetime.
class UpgradeConsole::Transfer {
public:
    Transfer(UpgradeConsole &console, const char *what, TransferKind kind)
        : console_(console),
          outer_(console.share_, Share{}) {
        Q_EMIT console_.PointerChanged(Qt::BusyCursor);
        Q_EMIT console_.TransferStarted(QString::fromLatin1(what), kind);
    }
    ~Transfer() {
        Q_EMIT console_.TransferEnded(image_);
        Q_EMIT console_.PointerChanged(Qt::ArrowCursor);
    }
    Transfer(const Transfer &) = delete;
    Transfer &operator=(const Transfer &) = delete;

    // Sets what is reported at the end.
    ImageWritten Report(const ImageWritten &image) { return image_ = image; }
    TransferResult Report(TransferResult result) { return Report(ImageWritten{.result = result}).result; }

private:
    UpgradeConsole &console_;
    ImageWritten image_{.result = TransferResult::Aborted}; // by a fault, unless reported otherwise
    QScopedValueRollback<Share> outer_;                     // of the transfer around this one
};

UpgradeConsole::UpgradeConsole(BootComm &bootComm, Dependencies dependencies, QObject *parent)
    : QObject(parent),
      bootComm_(bootComm),
      settings_(bootComm.Settings()),
      dependencies_(std::move(dependencies)) {
    bootComm_.OnTransfer(
        {.yield = [] { QCoreApplication::processEvents(); },
         .status = [this](const QString &word) { SetStatus(word); },
         .progress = [this](double done) { Q_EMIT TransferAdvanced(share_.before + share_.size * done); }});
}

UpgradeConsole::~UpgradeConsole() {
    bootComm_.OnTransfer({});
}

void UpgradeConsole::Load(std::int16_t commPort, std::int32_t bitRate, const QString &imageFolder) {
    const auto file = [&imageFolder](const char *name) {
        return QDir::toNativeSeparators(imageFolder + u'/' + QString::fromLatin1(name));
    };
    const std::int32_t handle = settings_.PortHandle;
    settings_ = BootSettings{};
    settings_.PortHandle = handle;
    settings_.BitRate = bitRate;
    settings_.PortName = QStringLiteral("COM%1").arg(commPort);
    settings_.ProgramFile = file("PROGMEM.MCP");
    settings_.EepromFile = file("EEDATA.MCP");
    settings_.UserIdFile = file("USERID.MCP");
    settings_.ConfigFile = file("CONFIG.MCP");
    settings_.ErrorFile = file("ERROR.MCP");
    Q_EMIT PanelChanged(Panel::ComPort, settings_.PortName);
    Q_EMIT PanelChanged(Panel::BaudRate, QString::number(settings_.BitRate));
}

void UpgradeConsole::SetStatus(const QString &word, const QString &toolTip) {
    Q_EMIT PanelChanged(Panel::Status, word, toolTip);
}

UpgradeConsole::ConnectOutcome UpgradeConsole::ConnectBootloader() {
    try {
        portWasOpened_ = bootComm_.OpenPort();
        if (!portWasOpened_) {
            SetStatus(QStringLiteral("Failed to open port..."));
            return ConnectOutcome::PortRefused;
        }
        if (!FindDevice()) {
            DisconnectBootloader();
            return ConnectOutcome::NoLoader;
        }
    } catch (const Fault &fault) {
        const QString word = QStringLiteral("Core error:  ") + fault.Description();
        SetStatus(word);
        Q_EMIT ConnectFaulted(word);
        return ConnectOutcome::Faulted;
    }
    Q_EMIT PanelChanged(Panel::Processor, settings_.DeviceName);
    SetStatus(QStringLiteral("Device found..."));
    Q_EMIT ConnectedChanged(true);
    return ConnectOutcome::Connected;
}

bool UpgradeConsole::FindDevice() {
    Q_EMIT PointerChanged(Qt::BusyCursor);
    const auto done = qScopeGuard([this] { Q_EMIT PointerChanged(Qt::ArrowCursor); });
    SetStatus(QStringLiteral("Searching for device..."));
    Q_EMIT RedrawWanted(); // the search blocks
    const QString version = bootComm_.ReadBootVersion();
    Q_EMIT PanelChanged(Panel::Version, version);
    return !version.isEmpty();
}

void UpgradeConsole::DisconnectBootloader() {
    settings_.ContinueFlag = 0;
    QCoreApplication::processEvents(); // lets a running loop end
    bootComm_.ClosePort();
    SetStatus(QStringLiteral("Not connected..."));
    Q_EMIT PanelChanged(Panel::Version, QStringLiteral(" "));
    Q_EMIT PanelChanged(Panel::Processor, QStringLiteral(" "));
    Q_EMIT ConnectedChanged(false);
}

void UpgradeConsole::ShowOutcome(TransferResult result, const QString &failed) {
    SetStatus(result == TransferResult::Aborted    ? QStringLiteral("Operation aborted...")
              : result == TransferResult::Finished ? QStringLiteral("Finished operation...")
                                                   : failed);
}

// Continues with the next region after a failure in one, unless aborted.
TransferResult UpgradeConsole::ReadDevice() {
    struct Region {
        std::int32_t start;
        std::int32_t end;
        std::uint8_t command;
        const QString &fileName;
    };
    const Region regions[] = {
        {settings_.ProgramStart, settings_.ProgramEnd, BootCommand::ReadProgram, settings_.ProgramFile},
        {settings_.EepromStart, settings_.EepromEnd, BootCommand::ReadEeprom, settings_.EepromFile},
        {settings_.ConfigStart, settings_.ConfigEnd, BootCommand::ReadProgram, settings_.ConfigFile},
        {settings_.UserIdStart, settings_.UserIdEnd, BootCommand::ReadProgram, settings_.UserIdFile},
    };
    constexpr std::uint8_t bytesPerAddress = 1;
    Transfer transfer(*this, "Reading", TransferKind::Read);
    double bytes = 0;
    for (const Region &region : regions) {
        bytes += region.end - region.start + 1;
    }
    share_.size = 0;
    TransferResult whole = TransferResult::Finished;
    for (Region region : regions) {
        share_ = {share_.before + share_.size, (region.end - region.start + 1) / bytes};
        const TransferResult result =
            bootComm_.ReadRegion(region.start, region.end, bytesPerAddress, region.command, region.fileName);
        ShowOutcome(result, QStringLiteral("Failed to read device..."));
        if (result == TransferResult::Aborted) {
            return transfer.Report(result);
        }
        if (whole == TransferResult::Finished) {
            whole = result;
        }
    }
    return transfer.Report(whole);
}

TransferResult UpgradeConsole::EraseDevice() {
    Transfer transfer(*this, "Erasing", TransferKind::Erase);
    const TransferResult result = bootComm_.EraseRegion(settings_.ProgramStart, settings_.ProgramEnd);
    ShowOutcome(result, QStringLiteral("Failed to write device..."));
    return transfer.Report(result);
}

ImageWritten UpgradeConsole::WriteDevice() {
    Transfer transfer(*this, "Writing", TransferKind::Write);
    const ImageWritten image = bootComm_.WriteProgramImage(settings_.WriteBlockBytes, settings_.AddressBytes,
                                                           BootCommand::WriteProgram, settings_.ProgramFile);
    if (image.result == TransferResult::VerifyFailed) {
        SetStatus(QStringLiteral("Verify error received..."));
        ShowInEditor(settings_.ErrorFile);
    } else {
        ShowOutcome(image.result, QStringLiteral("Failed to write device..."));
    }
    return transfer.Report(image);
}

void UpgradeConsole::Abort() {
    settings_.ContinueFlag = 0;
}

UpgradeConsole::HexFileOutcome UpgradeConsole::OpenHexFile(const QString &path) {
    return FileFunctions::FileExists(path) ? ImportHexFile(path) : HexFileOutcome::NotFound;
}

UpgradeConsole::HexFileOutcome UpgradeConsole::ImportHexFile(const QString &path) {
    settings_.HexInputPath = path;
    SetStatus(QStringLiteral("Importing HEX file..."));
    Q_EMIT PointerChanged(Qt::BusyCursor);
    const auto done = qScopeGuard([this] { Q_EMIT PointerChanged(Qt::ArrowCursor); });
    Q_EMIT RedrawWanted();
    return ShowHexFileWord(HexFileAccess::ImportForDeviceFamily(settings_, settings_.HexInputPath));
}

UpgradeConsole::HexFileOutcome UpgradeConsole::ShowHexFileWord(HexFileAccess::Result result) {
    if (result == HexFileAccess::Result::Good) {
        SetStatus(QStringLiteral("HEX file imported..."));
        return HexFileOutcome::Good;
    }
    if (result == HexFileAccess::Result::NotPadded) {
        SetStatus(QStringLiteral("HEX file not padded properly..."));
        return HexFileOutcome::NotPadded;
    }
    SetStatus(QStringLiteral("Invalid HEX file..."));
    return HexFileOutcome::Invalid;
}

UpgradeConsole::HexFileOutcome UpgradeConsole::CheckHexFile(const QString &path) {
    if (!FileFunctions::FileExists(path)) {
        SetStatus(QStringLiteral("Firmware file not found"), path);
        return HexFileOutcome::NotFound;
    }
    HexFileAccess::Result result = HexFileAccess::Result::Failed;
    try {
        result = HexFileAccess::CheckHexFile(path);
    } catch (const Fault &) { // It can't be opened: as bad as an invalid one.
    }
    return result == HexFileAccess::Result::Good ? HexFileOutcome::Good : ShowHexFileWord(result);
}

bool UpgradeConsole::SaveHexFile(const QString &path) {
    if (HexFileAccess::IsMemoryImage(settings_, path)) {
        return false;
    }
    settings_.HexOutputPath = path;
    SetStatus(QStringLiteral("Exporting HEX file..."));
    Q_EMIT PointerChanged(Qt::BusyCursor);
    const auto done = qScopeGuard([this] { Q_EMIT PointerChanged(Qt::ArrowCursor); });
    Q_EMIT RedrawWanted();
    HexFileAccess::ExportForDeviceFamily(settings_, settings_.HexOutputPath);
    SetStatus(QStringLiteral("HEX file exported..."));
    return true;
}

void UpgradeConsole::EraseFiles() {
    for (const QString *fileName :
         {&settings_.ProgramFile, &settings_.EepromFile, &settings_.UserIdFile, &settings_.ConfigFile}) {
        TextFileWriter(*fileName).Close();
    }
}

void UpgradeConsole::ViewFiles() {
    for (const QString *fileName :
         {&settings_.ProgramFile, &settings_.EepromFile, &settings_.ConfigFile, &settings_.UserIdFile}) {
        if (!ShowInEditor(*fileName)) {
            return;
        }
    }
}

bool UpgradeConsole::ShowInEditor(const QString &fileName) {
    const bool shown = dependencies_.showInEditor(settings_.EditorCommand, fileName);
    if (!shown) {
        Q_EMIT EditorMissing(fileName);
    }
    return shown;
}

bool UpgradeConsole::RunModeCommand() {
    const bool set = bootComm_.SetRunMode() == 1;
    SetStatus(set ? QStringLiteral("Run mode is set...") : QStringLiteral("Failed to put in Run mode..."));
    return set;
}

UpgradeConsole::RunOutcome UpgradeConsole::RunApp() {
    const RunOutcome outcome = StartApplication();
    Q_EMIT RunAppEnded(outcome);
    return outcome;
}

UpgradeConsole::RunOutcome UpgradeConsole::StartApplication() {
    Q_EMIT PointerChanged(Qt::WaitCursor);
    const auto done = qScopeGuard([this] { Q_EMIT PointerChanged(Qt::ArrowCursor); });
    if (!RunModeCommand()) {
        Q_EMIT RunAppFailed(RunOutcome::RunModeFailed);
        return RunOutcome::RunModeFailed;
    }
    RunOutcome outcome = RunOutcome::Started;
    if (!bootComm_.ResetProcessor().isEmpty()) {
        outcome = RunOutcome::ResetFailed;
        Q_EMIT RunAppFailed(outcome);
    }
    DisconnectBootloader();
    return outcome;
}

} // namespace ztv

#include "firmware/UpgradeConsole.h"

#include "firmware/HexFileAccess.h"
#include "firmware/TextFileWriter.h"
#include "support/ApplicationTitle.h"
#include "support/Fault.h"
#include "support/FileFunctions.h"

#include <QCoreApplication>
#include <QDir>
#include <QScopeGuard>
#include <QScopedValueRollback>

namespace {

FileQuestion HexFileQuestion(const char *title) {
    return {.filters = {{.caption = QStringLiteral("INHEX32 Files (*.HEX)"),
                         .patterns = {QStringLiteral("*.hex"), QStringLiteral("*.HEX")}},
                        {.caption = QStringLiteral("All Files (*.*)"), .patterns = {QStringLiteral("*")}}},
            .suggestion = {},
            .defaultSuffix = QStringLiteral("HEX"),
            .title = QString::fromLatin1(title)};
}

} // namespace

// Keeps the console busy and its transfer shown during its lifetime.
class UpgradeConsole::Transfer {
public:
    Transfer(UpgradeConsole &console, const char *what) : console_(console), outer_(console.share_, Share{}) {
        Q_EMIT console_.PointerChanged(Qt::BusyCursor);
        Q_EMIT console_.TransferStarted(QString::fromLatin1(what));
    }
    ~Transfer() {
        Q_EMIT console_.TransferEnded();
        Q_EMIT console_.PointerChanged(Qt::ArrowCursor);
    }
    Transfer(const Transfer &) = delete;
    Transfer &operator=(const Transfer &) = delete;

private:
    UpgradeConsole &console_;
    QScopedValueRollback<Share> outer_; // of the transfer that this one runs inside of
};

UpgradeConsole::UpgradeConsole(BootComm &bootComm, Surroundings surroundings, QObject *parent)
    : QObject(parent),
      bootComm_(bootComm),
      settings_(bootComm.Settings()),
      surroundings_(std::move(surroundings)) {
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

bool UpgradeConsole::ConnectBootloader() {
    try {
        portWasOpened_ = bootComm_.OpenPort();
        if (!portWasOpened_) {
            SetStatus(QStringLiteral("Failed to open port..."));
            return false;
        }
        if (!FindDevice()) {
            DisconnectBootloader();
            return false;
        }
    } catch (const Fault &fault) {
        const QString text = QStringLiteral("Core error:  ") + fault.Description();
        SetStatus(text);
        surroundings_.dialogs.OwnedMessageBox(text, {.icon = BoxIcon::None, .buttons = BoxButtons::Ok},
                                              QString());
        return false;
    }
    Q_EMIT PanelChanged(Panel::Processor, settings_.DeviceName);
    SetStatus(QStringLiteral("Device found..."));
    Q_EMIT ConnectedChanged(true);
    return true;
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
    QCoreApplication::processEvents(); // a loop that runs ends itself
    bootComm_.ClosePort();
    SetStatus(QStringLiteral("Not connected..."));
    Q_EMIT PanelChanged(Panel::Version, QStringLiteral(" "));
    Q_EMIT PanelChanged(Panel::Processor, QStringLiteral(" "));
    Q_EMIT ConnectedChanged(false);
}

// True, with its word, for a transfer that finished.
bool UpgradeConsole::ShowOutcome(std::int16_t result, const QString &failed) {
    SetStatus(result == TransferResult::Aborted    ? QStringLiteral("Operation aborted...")
              : result == TransferResult::Finished ? QStringLiteral("Finished operation...")
                                                   : failed);
    return result == TransferResult::Finished;
}

// A failure in one region doesn't stop the others.
void UpgradeConsole::ReadDevice() {
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
    const Transfer transfer(*this, "Reading");
    double whole = 0;
    for (const Region &region : regions) {
        whole += region.end - region.start + 1;
    }
    share_.size = 0;
    for (Region region : regions) {
        share_ = {share_.before + share_.size, (region.end - region.start + 1) / whole};
        const std::int16_t result =
            bootComm_.ReadRegion(region.start, region.end, bytesPerAddress, region.command, region.fileName);
        ShowOutcome(result, QStringLiteral("Failed to read device..."));
        if (result == TransferResult::Aborted) {
            return;
        }
    }
}

bool UpgradeConsole::EraseDevice() {
    const Transfer transfer(*this, "Erasing");
    return ShowOutcome(bootComm_.EraseRegion(settings_.ProgramStart, settings_.ProgramEnd),
                       QStringLiteral("Failed to write device..."));
}

bool UpgradeConsole::WriteDevice() {
    const Transfer transfer(*this, "Writing");
    const std::int16_t result = bootComm_.WriteProgramImage(settings_.WriteBlockBytes, settings_.AddressBytes,
                                                            BootCommand::WriteProgram, settings_.ProgramFile);
    if (result == TransferResult::VerifyFailed) {
        SetStatus(QStringLiteral("Verify error received..."));
        ShowInEditor(settings_.ErrorFile);
        return false;
    }
    return ShowOutcome(result, QStringLiteral("Failed to write device..."));
}

void UpgradeConsole::Abort() {
    settings_.ContinueFlag = 0;
}

bool UpgradeConsole::OpenHexFile(const QString &path) {
    if (path.isEmpty()) {
        const auto chosen = surroundings_.dialogs.OpenFileDialog(HexFileQuestion("Open HEX File"));
        if (!chosen) {
            return false;
        }
        settings_.HexInputPath = *chosen;
    } else if (FileFunctions::FileExists(path)) {
        settings_.HexInputPath = path;
    } else {
        return false;
    }
    SetStatus(QStringLiteral("Importing HEX file..."));
    Q_EMIT PointerChanged(Qt::BusyCursor);
    const auto done = qScopeGuard([this] { Q_EMIT PointerChanged(Qt::ArrowCursor); });
    Q_EMIT RedrawWanted();
    const std::int16_t result = HexFileAccess::ImportForDeviceFamily(settings_, settings_.HexInputPath);
    ShowImported(result);
    return result > 0;
}

void UpgradeConsole::ShowImported(std::int16_t result) {
    SetStatus(result == HexFileAccess::fileNotPadded ? QStringLiteral("HEX file not padded properly...")
              : result > 0                           ? QStringLiteral("HEX file imported...")
                                                     : QStringLiteral("Invalid HEX file..."));
}

bool UpgradeConsole::CheckHexFile(const QString &path) {
    if (!FileFunctions::FileExists(path)) {
        SetStatus(QStringLiteral("Firmware file not found"), path);
        return false;
    }
    std::int16_t result = HexFileAccess::failure;
    try {
        result = HexFileAccess::CheckHexFile(path);
    } catch (const Fault &) { // It can't be opened: no better than an invalid one.
    }
    if (result <= 0) {
        ShowImported(result);
    }
    return result > 0;
}

void UpgradeConsole::SaveHexFile() {
    const auto chosen = surroundings_.dialogs.SaveFileDialog(HexFileQuestion("Save HEX File"));
    if (!chosen) {
        return;
    }
    if (HexFileAccess::IsMemoryImage(settings_, *chosen)) {
        Warn(QStringLiteral("This is one of the program's own memory images. Choose another name for the hex "
                            "file.\n%1")
                 .arg(*chosen),
             ApplicationTitle());
        return;
    }
    settings_.HexOutputPath = *chosen;
    SetStatus(QStringLiteral("Exporting HEX file..."));
    Q_EMIT PointerChanged(Qt::BusyCursor);
    const auto done = qScopeGuard([this] { Q_EMIT PointerChanged(Qt::ArrowCursor); });
    Q_EMIT RedrawWanted();
    HexFileAccess::ExportForDeviceFamily(settings_, settings_.HexOutputPath);
    SetStatus(QStringLiteral("HEX file exported..."));
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
    const bool shown = surroundings_.showInEditor(settings_.EditorCommand, fileName);
    if (!shown) {
        Warn(QStringLiteral("No text editor could be started. The file is\n%1").arg(fileName),
             ApplicationTitle());
    }
    return shown;
}

bool UpgradeConsole::RunModeCommand() {
    const bool set = bootComm_.SetRunMode() == 1;
    SetStatus(set ? QStringLiteral("Run mode is set...") : QStringLiteral("Failed to put in Run mode..."));
    return set;
}

void UpgradeConsole::RunApp() {
    if (surroundings_.dialogs.OwnedMessageBox(QStringLiteral("Are you sure?"),
                                              {.icon = BoxIcon::None, .buttons = BoxButtons::YesNo},
                                              ApplicationTitle()) != BoxAnswer::Yes) {
        return;
    }
    Q_EMIT PointerChanged(Qt::WaitCursor);
    const auto done = qScopeGuard([this] { Q_EMIT PointerChanged(Qt::ArrowCursor); });
    if (!RunModeCommand()) {
        Warn(QStringLiteral("Failed to place processor in run mode!"), QStringLiteral("Error"));
        return;
    }
    if (!bootComm_.ResetProcessor().isEmpty()) {
        Warn(QStringLiteral("Reset Processor Failed!"), QStringLiteral("Error"));
    }
    DisconnectBootloader();
}

void UpgradeConsole::Warn(const QString &text, const QString &title) {
    surroundings_.dialogs.OwnedMessageBox(text, {.icon = BoxIcon::Exclamation, .buttons = BoxButtons::Ok},
                                          title);
}

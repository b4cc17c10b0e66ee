#include "firmware/ui/UpgradeBoxes.h"

#include "support/ApplicationTitle.h"

namespace ztv {

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

UpgradeBoxes::UpgradeBoxes(const UpgradeConsole &console, const OneButtonUpgrade &upgrade,
                           UserDialogs &dialogs, QObject *parent)
    : QObject(parent),
      dialogs_(dialogs) {
    connect(&console, &UpgradeConsole::ConnectFaulted, this, &UpgradeBoxes::OnConnectFaulted);
    connect(&console, &UpgradeConsole::EditorMissing, this, &UpgradeBoxes::OnEditorMissing);
    connect(&console, &UpgradeConsole::RunAppFailed, this, &UpgradeBoxes::OnRunAppFailed);
    connect(&upgrade, &OneButtonUpgrade::Ended, this, &UpgradeBoxes::OnUpgradeEnded);
}

bool UpgradeBoxes::ConfirmUpgrade() {
    return Confirm(dialogs_,
                   QStringLiteral("This utility will upgrade the ZTV500-100 firmware.\n\nContinue?"));
}

bool UpgradeBoxes::ConfirmRunApp() {
    // Deliberate: a question without the icon of one.
    return dialogs_.OwnedMessageBox(QStringLiteral("Are you sure?"),
                                    {.icon = BoxIcon::None, .buttons = BoxButtons::YesNo},
                                    ApplicationTitle()) == BoxAnswer::Yes;
}

std::optional<QString> UpgradeBoxes::AskForHexFileToOpen() {
    return dialogs_.OpenFileDialog(HexFileQuestion("Open HEX File"));
}

std::optional<QString> UpgradeBoxes::AskForFirmwareFile(const QString &present) {
    FileQuestion question = HexFileQuestion("Choose Firmware File");
    question.suggestion = present;
    return dialogs_.OpenFileDialog(question);
}

std::optional<QString> UpgradeBoxes::AskForHexFileToSave() {
    return dialogs_.SaveFileDialog(HexFileQuestion("Save HEX File"));
}

void UpgradeBoxes::ShowIsMemoryImage(const QString &fileName) {
    Warn(dialogs_,
         QStringLiteral("This is one of the program's own memory images. Choose another name for the hex "
                        "file.\n%1")
             .arg(fileName));
}

void UpgradeBoxes::OnConnectFaulted(const QString &word) {
    dialogs_.OwnedMessageBox(word, {.icon = BoxIcon::None, .buttons = BoxButtons::Ok}, QString());
}

void UpgradeBoxes::OnEditorMissing(const QString &fileName) {
    Warn(dialogs_, QStringLiteral("No text editor could be started. The file is\n%1").arg(fileName));
}

void UpgradeBoxes::OnRunAppFailed(UpgradeConsole::RunOutcome outcome) {
    Warn(dialogs_,
         outcome == UpgradeConsole::RunOutcome::RunModeFailed
             ? QStringLiteral("Failed to place processor in run mode!")
             : QStringLiteral("Reset Processor Failed!"),
         QStringLiteral("Error"));
}

void UpgradeBoxes::OnUpgradeEnded(UpgradeOutcome outcome) {
    switch (outcome) {
    case UpgradeOutcome::Upgraded: // Deliberate: success has the icon of a warning, too; and the spelling
        Warn(dialogs_, QStringLiteral("Firmware has been sucessfully upgraded!"));
        break;
    case UpgradeOutcome::NotPolled:
    case UpgradeOutcome::CommandUnanswered:
    case UpgradeOutcome::PortNotReleased:
    case UpgradeOutcome::LoaderNotFound:
        Warn(dialogs_,
             QStringLiteral("Error Connecting to ZTV500-100. (MSG#%1)").arg(static_cast<int>(outcome)));
        break;
    default: // the status word is enough
        break;
    }
}

} // namespace ztv

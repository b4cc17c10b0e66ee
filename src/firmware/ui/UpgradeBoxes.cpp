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
    return Confirm(QStringLiteral("This utility will upgrade the ZTV500-100 firmware.\n\nContinue?"),
                   BoxIcon::Question);
}

bool UpgradeBoxes::ConfirmRunApp() {
    return Confirm(QStringLiteral("Are you sure?"), BoxIcon::None);
}

std::optional<QString> UpgradeBoxes::AskForHexFileToOpen() {
    return dialogs_.OpenFileDialog(HexFileQuestion("Open HEX File"));
}

std::optional<QString> UpgradeBoxes::AskForHexFileToSave() {
    return dialogs_.SaveFileDialog(HexFileQuestion("Save HEX File"));
}

void UpgradeBoxes::ShowIsMemoryImage(const QString &fileName) {
    Warn(QStringLiteral("This is one of the program's own memory images. Choose another name for the hex "
                        "file.\n%1")
             .arg(fileName),
         ApplicationTitle());
}

void UpgradeBoxes::OnConnectFaulted(const QString &word) {
    dialogs_.OwnedMessageBox(word, {.icon = BoxIcon::None, .buttons = BoxButtons::Ok}, QString());
}

void UpgradeBoxes::OnEditorMissing(const QString &fileName) {
    Warn(QStringLiteral("No text editor could be started. The file is\n%1").arg(fileName),
         ApplicationTitle());
}

void UpgradeBoxes::OnRunAppFailed(UpgradeConsole::RunOutcome outcome) {
    Warn(outcome == UpgradeConsole::RunOutcome::RunModeFailed
             ? QStringLiteral("Failed to place processor in run mode!")
             : QStringLiteral("Reset Processor Failed!"),
         QStringLiteral("Error"));
}

void UpgradeBoxes::OnUpgradeEnded(UpgradeOutcome outcome) {
    switch (outcome) {
    case UpgradeOutcome::Upgraded: // Deliberate: success has the icon of a warning, too; and the spelling
        Warn(QStringLiteral("Firmware has been sucessfully upgraded!"), ApplicationTitle());
        break;
    case UpgradeOutcome::NotPolled:
    case UpgradeOutcome::CommandUnanswered:
    case UpgradeOutcome::PortNotReleased:
    case UpgradeOutcome::LoaderNotFound:
        Warn(QStringLiteral("Error Connecting to ZTV500-100. (MSG#%1)").arg(static_cast<int>(outcome)),
             ApplicationTitle());
        break;
    default: // the status word is enough
        break;
    }
}

bool UpgradeBoxes::Confirm(const QString &question, BoxIcon icon) {
    return dialogs_.OwnedMessageBox(question, {.icon = icon, .buttons = BoxButtons::YesNo},
                                    ApplicationTitle()) == BoxAnswer::Yes;
}

void UpgradeBoxes::Warn(const QString &text, const QString &title) {
    dialogs_.OwnedMessageBox(text, {.icon = BoxIcon::Exclamation, .buttons = BoxButtons::Ok}, title);
}

} // namespace ztv

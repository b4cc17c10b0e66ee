#include "shell/Program.h"

#include "desktop/FileType.h"
#include "desktop/SystemInformation.h"
#include "desktop/TextEditor.h"
#include "shell/FormMain.h"
#include "shell/Rescue.h"
#include "support/ApplicationTitle.h"

#include <QApplication>
#include <QDesktopServices>
#include <cstdlib>

namespace ztv {

namespace {

void RegisterFileType(const QString &application) {
    if (!application.isEmpty()) {
        FileType::Register(application, QStringLiteral(":/desktop/ztvlink.svg"));
    }
}

void StartSysInfo(UserDialogs &dialogs) {
#ifdef Q_OS_WIN
    SystemRegistryReader registry;
    SystemInformation::StartSysInfo(registry, SystemInformation::StartDetached, dialogs);
#else
    SystemInformation::StartSysInfo(SystemInformation::StartDetached, dialogs);
#endif
}

} // namespace

void ShowFault(UserDialogs &dialogs, const Fault &fault, FormMain *form) {
    QString text = fault.Description();
    const QString rescued = form != nullptr ? RescueUnsavedChanges(form->Zentrova()) : QString();
    if (!rescued.isEmpty()) {
        text += QStringLiteral("\n\n") + rescued;
    }
    text += QStringLiteral("\n\nThe program has to close.");
    dialogs.OwnedMessageBox(text, {.icon = BoxIcon::Critical, .buttons = BoxButtons::Ok}, ApplicationTitle());
}

int RunProgram(const ProgramStart &start, const std::function<void(FormMain &)> &onShown) {
    try {
        FormMain form(
            {.dialogs = start.dialogs,
             .settings = start.settings,
             .helpEngine = start.helpEngine,
             .programFolder = start.programFolder,
             .arguments = start.arguments,
             .ctrlKeyIsDown =
                 [] { return QGuiApplication::queryKeyboardModifiers().testFlag(Qt::ControlModifier); },
             .registerFileType = [&start] { RegisterFileType(start.application); },
             .openUrl = QDesktopServices::openUrl,
             .showInEditor = TextEditor::Show,
             .startSysInfo = [&start] { StartSysInfo(start.dialogs); },
             .backupFolder = start.backupFolder});
        form.ShowAsStored();
        onShown(form);
        return QApplication::exec();
    } catch (const Fault &fault) {
        ShowFault(start.dialogs, fault);
        return EXIT_FAILURE;
    }
}

} // namespace ztv

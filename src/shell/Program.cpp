#include "shell/Program.h"

#include "shell/FormMain.h"
#include "support/ApplicationTitle.h"
#include "support/FileType.h"

#include <QApplication>
#include <cstdlib>

namespace {

void RegisterFileType(const QString &application) {
    if (!application.isEmpty()) {
        FileType::Register(application, QStringLiteral(":/icons/ztvlink.svg"));
    }
}

} // namespace

void ShowFault(UserDialogs &dialogs, const Fault &fault) {
    dialogs.OwnedMessageBox(fault.Description(), {.icon = BoxIcon::Critical, .buttons = BoxButtons::Ok},
                            ApplicationTitle());
}

int RunProgram(const ProgramStart &start, const std::function<void(QWidget &)> &onShown) {
    try {
        FormMain form(
            {.dialogs = start.dialogs,
             .settings = start.settings,
             .programFolder = start.programFolder,
             .commandText = start.commandText,
             .ctrlKeyIsDown =
                 [] { return QGuiApplication::queryKeyboardModifiers().testFlag(Qt::ControlModifier); },
             .registerFileType = [&start] { RegisterFileType(start.application); }});
        form.ShowAsStored();
        onShown(form);
        return QApplication::exec();
    } catch (const Fault &fault) {
        ShowFault(start.dialogs, fault);
        return EXIT_FAILURE;
    }
}

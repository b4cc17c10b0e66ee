#include "shell/Program.h"

#include "shell/FormMain.h"
#include "support/ApplicationTitle.h"

#include <QApplication>
#include <cstdlib>

void ShowFault(UserDialogs &dialogs, const Fault &fault) {
    dialogs.OwnedMessageBox(fault.Description(), {.icon = BoxIcon::Critical, .buttons = BoxButtons::Ok},
                            ApplicationTitle());
}

int RunProgram(const ProgramStart &start, const std::function<void(QWidget &)> &onShown) {
    try {
        FormMain form({.dialogs = start.dialogs,
                       .settings = start.settings,
                       .programFolder = start.programFolder,
                       .commandText = start.commandText,
                       .ctrlKeyIsDown = [] {
                           return QGuiApplication::queryKeyboardModifiers().testFlag(Qt::ControlModifier);
                       }});
        form.ShowAsStored();
        onShown(form);
        return QApplication::exec();
    } catch (const Fault &fault) {
        ShowFault(start.dialogs, fault);
        return EXIT_FAILURE;
    }
}

#include "shell/Program.h"

#include "shell/FormMain.h"
#include "support/ApplicationTitle.h"
#include "support/Fault.h"

#include <QApplication>
#include <cstdlib>

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
        start.dialogs.OwnedMessageBox(
            fault.Description(), {.icon = BoxIcon::Critical, .buttons = BoxButtons::Ok}, ApplicationTitle());
        return EXIT_FAILURE;
    }
}

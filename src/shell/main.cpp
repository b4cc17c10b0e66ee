#include "shell/Application.h"
#include "shell/CommandLine.h"
#include "shell/Program.h"
#include "support/ApplicationTitle.h"
#include "support/ProgramFolder.h"
#include "support/SettingsStore.h"
#include "support/ui/QtDialogs.h"

int main(int argc, char *argv[]) {
    Application application(argc, argv);
    QtDialogs dialogs;
    SettingsStore settings(ApplicationTitle());
    return RunProgram({.dialogs = dialogs,
                       .settings = settings,
                       .programFolder = ProgramFolder(),
                       .commandText = CommandLine::JoinArguments(QCoreApplication::arguments().mid(1))},
                      [&dialogs](QWidget &form) { dialogs.SetOwner(&form); });
}

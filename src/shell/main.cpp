#include "shell/Application.h"
#include "shell/CommandLine.h"
#include "shell/Program.h"
#include "support/ApplicationTitle.h"
#include "support/FileType.h"
#include "support/ProgramFolder.h"
#include "support/SettingsStore.h"
#include "support/ui/QtDialogs.h"

#include <cstdlib>

int main(int argc, char *argv[]) {
    Application application(argc, argv);
    QtDialogs dialogs;
    application.OnFault([&dialogs](const Fault &fault) {
        ShowFault(dialogs, fault);
        std::_Exit(EXIT_FAILURE); // what the fault broke mustn't be torn down in order
    });
    SettingsStore settings(ApplicationTitle());
    return RunProgram({.dialogs = dialogs,
                       .settings = settings,
                       .programFolder = ProgramFolder(),
                       .commandText = CommandLine::JoinArguments(QCoreApplication::arguments().mid(1)),
                       .application = FileType::ThisApplication()},
                      [&dialogs](QWidget &form) { dialogs.SetOwner(&form); });
}

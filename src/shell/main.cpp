#include "desktop/FileType.h"
#include "shell/Application.h"
#include "shell/CommandLine.h"
#include "shell/FormMain.h"
#include "shell/Program.h"
#include "shell/SystemHelp.h"
#include "support/ApplicationTitle.h"
#include "support/ProgramFolder.h"
#include "support/SettingsStore.h"
#include "widgets/QtDialogs.h"

#include <cstdlib>

#ifdef Q_OS_WIN
#include <qt_windows.h>
#endif

namespace ztv {

namespace {

std::vector<QString> Arguments() {
#ifdef Q_OS_WIN
    const QString text = QString::fromWCharArray(GetCommandLineW());
    const qsizetype program = CommandLine::FindArgumentEnd(text);
    return CommandLine::SplitArguments(program < 0 ? QString() : text.mid(program));
#else
    return CommandLine::AsTyped(QCoreApplication::arguments().mid(1));
#endif
}

} // namespace

} // namespace ztv

using namespace ztv;

int main(int argc, char *argv[]) {
    Application application(argc, argv);
    FixProgramFolder();
    QtDialogs dialogs;
    FormMain *form = nullptr;
    application.OnFault([&dialogs, &form](const Fault &fault) {
        ShowFault(dialogs, fault, form);
        // Skips the destructors: the fault may have left objects in an invalid state.
        std::_Exit(EXIT_FAILURE);
    });
    SettingsStore settings(ApplicationTitle());
    const std::unique_ptr<HelpEngine> help = SystemHelp(ProgramFolder(), dialogs);
    return RunProgram({.dialogs = dialogs,
                       .settings = settings,
                       .helpEngine = *help,
                       .programFolder = ProgramFolder(),
                       .arguments = Arguments(),
                       .application = FileType::ThisApplication()},
                      [&dialogs, &form](FormMain &shown) {
                          dialogs.SetOwner(&shown);
                          form = &shown;
                      });
}

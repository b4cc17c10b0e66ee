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

#include <cstdio>
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

// The program's arguments before there is an application object.
QStringList WithoutApplication(int argc, char *argv[]) {
    QStringList arguments;
    for (int index = 1; index < argc; ++index) {
        arguments.append(QString::fromLocal8Bit(argv[index]));
    }
    return arguments;
}

int Print(const QString &text) {
    const bool printed = std::fputs(text.toLocal8Bit().constData(), stdout) >= 0 && std::fflush(stdout) == 0;
    return printed ? EXIT_SUCCESS : EXIT_FAILURE;
}

} // namespace

} // namespace ztv

using namespace ztv;

int main(int argc, char *argv[]) {
    // An application object needs a display, and without one ends the program.
    if (const auto text = CommandLine::TextToPrint(WithoutApplication(argc, argv))) {
        return Print(*text);
    }
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
                       .application = FileType::ThisApplication(),
                       .backupFolder = BackupFolder()},
                      [&dialogs, &form](FormMain &shown) {
                          dialogs.SetOwner(&shown);
                          form = &shown;
                      });
}

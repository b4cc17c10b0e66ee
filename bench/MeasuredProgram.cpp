// The program as shipped, which also reports when it has painted its window. Given a number of milliseconds,
// it then goes online and reports again after that time.

#include "bench/FirstPaint.h"
#include "shell/Application.h"
#include "shell/FormMain.h"
#include "shell/Program.h"
#include "shell/SystemHelp.h"
#include "support/ApplicationTitle.h"
#include "support/ProgramFolder.h"
#include "widgets/QtDialogs.h"

#include <QTimer>

using namespace ztv;

int main(int argc, char *argv[]) {
    Application application(argc, argv);
    const int pollMs = argc > 1 ? QByteArray(argv[1]).toInt() : 0;
    FormMain *form = nullptr;
    const FirstPaint firstPaint([&form, pollMs] {
        ReportStage("painted");
        if (pollMs > 0) {
            form->GoOnline(1);
            QTimer::singleShot(pollMs, form, [] { ReportStage("polled"); });
        }
    });
    QtDialogs dialogs;
    SettingsStore settings(ApplicationTitle());
    const std::unique_ptr<HelpEngine> help = SystemHelp(ProgramFolder(), dialogs);
    return RunProgram({.dialogs = dialogs,
                       .settings = settings,
                       .helpEngine = *help,
                       .programFolder = ProgramFolder(),
                       .arguments = {}},
                      [&dialogs, &form](FormMain &shown) {
                          dialogs.SetOwner(&shown);
                          form = &shown;
                      });
}

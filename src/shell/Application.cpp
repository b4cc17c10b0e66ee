#include "shell/Application.h"

#include "support/ApplicationTitle.h"
#include "widgets/FocusStyle.h"
#include "widgets/QuietWheel.h"

#ifdef Q_OS_LINUX
#include <sys/prctl.h>
#endif

namespace {

// The silent intervals between two frames are of one or two milliseconds, and Linux lets a timer be late by
// 50 microseconds unless told otherwise.
void AskForPunctualTimers() {
#ifdef Q_OS_LINUX
    constexpr unsigned long slackNs = 1000;
    prctl(PR_SET_TIMERSLACK, slackNs);
#endif
}

} // namespace

Application::Application(int &argc, char **argv) : QApplication(argc, argv) {
    setApplicationName(ApplicationTitle());
    setDesktopFileName(QStringLiteral("ztv-link"));
    setStyle(new FocusStyle);
    new QuietWheel;
    AskForPunctualTimers();
}

bool Application::notify(QObject *receiver, QEvent *event) {
    try {
        return QApplication::notify(receiver, event);
    } catch (const Fault &fault) {
        if (!onFault_) {
            throw;
        }
        // While the first fault is on screen, those that follow from it add nothing.
        if (!handlingFault_) {
            handlingFault_ = true;
            onFault_(fault);
            handlingFault_ = false;
        }
        return true;
    }
}

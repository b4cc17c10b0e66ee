#include "shell/Application.h"

#include "support/ApplicationTitle.h"
#include "widgets/FocusStyle.h"
#include "widgets/QuietWheel.h"

#ifdef Q_OS_LINUX
#include <sys/prctl.h>
#endif

namespace ztv {

namespace {

// Reduces the lateness of timers: the silent intervals between two frames are one or two milliseconds long,
// and Linux delays a timer by up to 50 microseconds by default.
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
        // Ignores the faults that follow from the first one while that is on screen.
        if (!handlingFault_) {
            handlingFault_ = true;
            onFault_(fault);
            handlingFault_ = false;
        }
        return true;
    }
}

} // namespace ztv

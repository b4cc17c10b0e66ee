#include "tests/helpers/Wait.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>

namespace ztv {

bool WaitUntil(const std::function<bool()> &condition, int deadlineMs) {
    QElapsedTimer elapsed;
    elapsed.start();
    // Bounds each wait for an event, so that a condition that changes without an event is checked too.
    QTimer pulse;
    pulse.start(5);
    while (!condition()) {
        if (elapsed.hasExpired(deadlineMs)) {
            return false;
        }
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
    }
    return true;
}

void Settle() {
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents();
}

} // namespace ztv

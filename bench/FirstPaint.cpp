#include "bench/FirstPaint.h"

#include "bench/Measure.h"

#include <QCoreApplication>
#include <QEvent>
#include <QWidget>
#include <cstdio>

namespace ztv {

FirstPaint::FirstPaint(std::function<void()> onPainted) : onPainted_(std::move(onPainted)) {
    qApp->installEventFilter(this);
}

bool FirstPaint::eventFilter(QObject *watched, QEvent *event) {
    if (event->type() == QEvent::Paint && qobject_cast<QWidget *>(watched) != nullptr) {
        qApp->removeEventFilter(this);
        // The window's controls are painted in the same pass as the window.
        QMetaObject::invokeMethod(this, onPainted_, Qt::QueuedConnection);
    }
    return false;
}

void ReportStage(const char *stage) {
    const double now = Measure::NowMs();
    std::printf("%s %.3f %.3f %.3f\n", stage, now, Measure::ProcessorMs(), Measure::ResidentMiB());
    std::fflush(stdout);
}

} // namespace ztv

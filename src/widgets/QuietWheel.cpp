#include "widgets/QuietWheel.h"

#include <QAbstractSlider>
#include <QAbstractSpinBox>
#include <QApplication>
#include <QComboBox>
#include <QEvent>
#include <QScrollBar>
#include <QTabBar>

namespace ztv {

namespace {

bool ChangesByWheel(const QObject &object) {
    return qobject_cast<const QComboBox *>(&object) != nullptr ||
           qobject_cast<const QAbstractSpinBox *>(&object) != nullptr ||
           qobject_cast<const QTabBar *>(&object) != nullptr ||
           (qobject_cast<const QAbstractSlider *>(&object) != nullptr &&
            qobject_cast<const QScrollBar *>(&object) == nullptr);
}

} // namespace

QuietWheel::QuietWheel() : QObject(qApp) {
    qApp->installEventFilter(this);
}

// Ignores the event, so that Qt sends it to the parent.
bool QuietWheel::eventFilter(QObject *watched, QEvent *event) {
    if (event->type() != QEvent::Wheel || !ChangesByWheel(*watched)) {
        return QObject::eventFilter(watched, event);
    }
    event->ignore();
    return true;
}

} // namespace ztv

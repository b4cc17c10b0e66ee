#include "widgets/DeferredWork.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>

namespace ztv {

namespace DeferredWork {

void OnPress(QAbstractButton &button, std::function<void()> work) {
    QObject::connect(
        &button, &QAbstractButton::clicked, &button,
        [&button, work = std::move(work)] {
            const QWidget *modal = QApplication::activeModalWidget();
            if (button.isEnabled() && (modal == nullptr || modal == button.window())) {
                work();
            }
        },
        Qt::QueuedConnection);
}

void OnTrigger(QAction &action, std::function<void()> work) {
    QObject::connect(
        &action, &QAction::triggered, &action,
        [&action, work = std::move(work)] {
            if (action.isEnabled() && QApplication::activeModalWidget() == nullptr) {
                work();
            }
        },
        Qt::QueuedConnection);
}

} // namespace DeferredWork

} // namespace ztv

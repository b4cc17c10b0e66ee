#include "tests/helpers/MainForm.h"

#include <QApplication>
#include <QTimer>

namespace ztv {

void WhenDialogOpens(std::function<void(QWidget &)> work) {
    constexpr int pulseMs = 1;
    QTimer::singleShot(pulseMs, qApp, [work = std::move(work)] {
        QWidget *dialog = QApplication::activeModalWidget();
        // An inactive window has no focus, and its mnemonics don't work.
        if (dialog != nullptr && dialog->isActiveWindow()) {
            work(*dialog);
        } else {
            WhenDialogOpens(work);
        }
    });
}

} // namespace ztv

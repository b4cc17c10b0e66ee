#include "tests/support/MainForm.h"

#include <QApplication>
#include <QTimer>

void WhenDialogOpens(std::function<void(QWidget &)> work) {
    QTimer::singleShot(0, qApp, [work = std::move(work)] {
        if (QWidget *dialog = QApplication::activeModalWidget()) {
            work(*dialog);
        } else {
            WhenDialogOpens(work);
        }
    });
}

#include "shell/Application.h"

#include "support/ApplicationTitle.h"

#include <QMessageBox>
#include <cstdlib>

namespace {

void ShowAndEnd(const Fault &fault) {
    QMessageBox box(QMessageBox::Critical, ApplicationTitle(), fault.Description(), QMessageBox::Ok);
    box.setTextFormat(Qt::PlainText);
    box.exec();
    std::_Exit(EXIT_FAILURE); // what the fault broke mustn't be torn down in order
}

} // namespace

Application::Application(int &argc, char **argv) : QApplication(argc, argv), onFault_(ShowAndEnd) {
    setApplicationName(ApplicationTitle());
    setStyle(QStringLiteral("Fusion"));
}

bool Application::notify(QObject *receiver, QEvent *event) {
    try {
        return QApplication::notify(receiver, event);
    } catch (const Fault &fault) {
        // While the first fault is on screen, those that follow from it add nothing.
        if (!handlingFault_) {
            handlingFault_ = true;
            onFault_(fault);
            handlingFault_ = false;
        }
        return true;
    }
}

#include "tests/helpers/QtWarnings.h"

#include <QString>
#include <gtest/gtest.h>

namespace ztv {

namespace {

// The offscreen platform warns about features that it lacks.
bool IsOfTheScreen(const QString &message) {
    return message.contains(QStringLiteral("This plugin does not support"));
}

void Handle(QtMsgType type, const QMessageLogContext &, const QString &message) {
    if ((type == QtWarningMsg || type == QtCriticalMsg) && !IsOfTheScreen(message)) {
        ADD_FAILURE() << "Qt: " << message.toStdString();
    }
}

} // namespace

void FailOnQtWarnings() {
    qInstallMessageHandler(Handle);
}

} // namespace ztv

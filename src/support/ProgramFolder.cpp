#include "support/ProgramFolder.h"

#include <QCoreApplication>

QString ProgramFolder() {
    const QString home = qEnvironmentVariable("ZTVLINK_HOME");
    return home.isEmpty() ? QCoreApplication::applicationDirPath() : home;
}

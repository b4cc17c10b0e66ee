#include "support/ProgramFolder.h"

#include "support/ApplicationTitle.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <QTemporaryFile>

namespace ztv {

QString ProgramFolder() {
    const QString home = qEnvironmentVariable("ZTVLINK_HOME");
    return home.isEmpty() ? QCoreApplication::applicationDirPath() : home;
}

void FixProgramFolder() {
    if (!qEnvironmentVariableIsEmpty("ZTVLINK_HOME")) {
        qputenv("ZTVLINK_HOME", QFile::encodeName(QDir(ProgramFolder()).absolutePath()));
    }
}

QString FolderForOwnFiles(const QString &programFolder) {
    // Creates a file to find out: a folder's attributes don't decide where access lists or a read-only disk
    // do.
    QTemporaryFile trial(programFolder + QStringLiteral("/XXXXXX.tmp"));
    return trial.open() ? programFolder : UserDataFolder();
}

QString UserDataFolder() {
    const QString folder =
        QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + u'/' + ApplicationTitle();
    QDir().mkpath(folder);
    return folder;
}

} // namespace ztv

#include "support/ProgramFolder.h"

#include "support/ApplicationTitle.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <QTemporaryFile>

namespace ztv {

namespace {

QString DataPath() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + u'/' + ApplicationTitle();
}

} // namespace

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

QString BackupFolder() {
    return DataPath() + QStringLiteral("/Backups");
}

QString UserDataFolder() {
    QDir().mkpath(DataPath());
    return DataPath();
}

} // namespace ztv

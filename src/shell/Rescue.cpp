#include "shell/Rescue.h"

#include "support/Fault.h"
#include "support/ProgramFolder.h"

#include <QDateTime>
#include <QDir>
#include <QFile>

namespace ztv {

namespace {

QString NewFileName(const QString &folder) {
    const QString stem =
        QDir(folder).filePath(QStringLiteral("Rescued ") +
                              QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd HH-mm-ss")));
    QString name = stem + QStringLiteral(".ztv");
    for (int next = 2; QFile::exists(name); ++next) {
        name = QStringLiteral("%1 (%2).ztv").arg(stem).arg(next);
    }
    return QDir::toNativeSeparators(name);
}

} // namespace

QString RescueUnsavedChanges(ClassZentrova &zentrova) {
    if (!zentrova.FileChangesNeedSaving()) {
        return {};
    }
    QString reason;
    for (const QString &folder : {UserDataFolder(), QDir::homePath(), QDir::tempPath()}) {
        const QString name = NewFileName(folder);
        try {
            zentrova.SaveFile(name);
            return QStringLiteral("Your unsaved changes are in the file\n%1").arg(name);
        } catch (const Fault &fault) {
            reason = reason.isEmpty() ? fault.Description() : reason;
        }
    }
    return QStringLiteral("Your unsaved changes couldn't be saved: %1").arg(reason);
}

} // namespace ztv

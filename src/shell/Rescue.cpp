#include "shell/Rescue.h"

#include "support/Fault.h"
#include "support/ProgramFolder.h"

#include <QDateTime>
#include <QDir>
#include <QFile>

namespace {

QString NewFileName() {
    const QDir folder(UserDataFolder());
    const QString stem =
        folder.filePath(QStringLiteral("Rescued ") +
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
    const QString name = NewFileName();
    try {
        zentrova.SaveFile(name);
        return QStringLiteral("Your unsaved changes are in the file\n%1").arg(name);
    } catch (const Fault &fault) {
        return QStringLiteral("Your unsaved changes couldn't be saved: %1").arg(fault.Description());
    }
}

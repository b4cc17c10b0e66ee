#include "support/FileFunctions.h"

#include <QFileInfo>

bool FileFunctions::FileExists(const QString &path) {
    if (path.isEmpty() || path.contains(QChar::Null)) {
        return false; // which Qt would warn of
    }
    const QFileInfo file(path);
#ifdef Q_OS_WIN
    if (file.isHidden()) {
        return false;
    }
#endif
    return file.isFile();
}

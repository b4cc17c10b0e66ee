#include "support/FileFunctions.h"

#include <QFileInfo>

namespace ztv {

bool FileFunctions::FileExists(const QString &path) {
    if (path.isEmpty() || path.contains(QChar::Null)) {
        return false; // Qt would warn of it
    }
    const QFileInfo file(path);
#ifdef Q_OS_WIN
    if (file.isHidden()) {
        return false;
    }
#endif
    return file.isFile();
}

} // namespace ztv

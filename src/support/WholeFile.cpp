#include "support/WholeFile.h"

#include <QSaveFile>

bool WholeFile::Write(const QString &path, const QByteArray &content) {
    QSaveFile file(path);
    // commit() writes what is buffered as well, but doesn't notice when that fails.
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size() && file.flush() &&
           file.commit();
}

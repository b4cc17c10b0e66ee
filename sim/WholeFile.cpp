#include "sim/WholeFile.h"

#include <QSaveFile>

namespace sim {

QString WriteWholeFile(const QString &fileName, const QByteArray &content) {
    QSaveFile file(fileName);
    if (file.open(QIODevice::WriteOnly) && file.write(content) == content.size() && file.commit()) {
        return {};
    }
    return QStringLiteral("%1: %2").arg(fileName, file.errorString());
}

} // namespace sim

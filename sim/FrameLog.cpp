#include "sim/FrameLog.h"

#include <cstdio>

namespace sim {

QString FrameLog::Open(const QString &fileName) {
    if (fileName.isEmpty()) {
        return {};
    }
    bool opened = false;
    if (fileName == QLatin1String("-")) {
        opened = file_.open(stderr, QIODevice::WriteOnly);
    } else {
        file_.setFileName(fileName);
        opened = file_.open(QIODevice::WriteOnly | QIODevice::Truncate);
    }
    return opened ? QString() : QStringLiteral("%1: %2").arg(fileName, file_.errorString());
}

void FrameLog::Write(qint64 ms, const char *direction, const QByteArray &bytes) {
    if (!file_.isOpen() || bytes.isEmpty()) {
        return;
    }
    file_.write(QByteArray::number(ms) + ' ' + direction + ' ' + bytes.toHex(' ') + '\n');
    file_.flush();
}

} // namespace sim

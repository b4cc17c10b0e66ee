#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>

namespace sim {

// One line a frame: the time in milliseconds, the direction, the bytes in hexadecimal.
class FrameLog {
public:
    // "-" is standard error; an empty name logs nothing. Returns what went wrong, or an empty text.
    QString Open(const QString &fileName);
    void Write(qint64 ms, const char *direction, const QByteArray &bytes);

private:
    QFile file_;
};

} // namespace sim

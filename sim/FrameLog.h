#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>

namespace sim {

// Logs frames, one per line: the time in milliseconds, the direction, the bytes in hexadecimal.
class FrameLog {
public:
    // Opens the log. "-" is standard error; an empty name disables the log. Returns a description of the
    // error, or an empty text.
    QString Open(const QString &fileName);
    void Write(qint64 ms, const char *direction, const QByteArray &bytes);

private:
    QFile file_;
};

} // namespace sim

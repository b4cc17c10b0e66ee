#pragma once

#include <QByteArray>
#include <QSocketNotifier>

#include <functional>

namespace sim {

// Reads lines from a descriptor in the event loop, until the end of its input.
class LineReader {
public:
    LineReader(int descriptor, std::function<void(const QByteArray &)> onLine);

private:
    void Read();

    std::function<void(const QByteArray &)> onLine_;
    QSocketNotifier notifier_;
    QByteArray buffer_;
};

} // namespace sim

#include "firmware/TimeLeft.h"

#include <cmath>

QString TimeLeft(qint64 elapsedMs, double done) {
    constexpr qint64 leastElapsedMs = 1000; // before, the pace isn't known well enough
    if (elapsedMs < leastElapsedMs || done <= 0) {
        return {};
    }
    constexpr double msPerSecond = 1000;
    constexpr qint64 secondsPerMinute = 60;
    const double left = static_cast<double>(elapsedMs) * (1 - done) / done;
    const auto seconds = static_cast<qint64>(std::ceil(left / msPerSecond));
    if (seconds < secondsPerMinute) {
        return QStringLiteral("%1 s left").arg(seconds);
    }
    return QStringLiteral("%1 min %2 s left").arg(seconds / secondsPerMinute).arg(seconds % secondsPerMinute);
}

#include "firmware/TimeLeft.h"

#include "support/TimeLeftText.h"

namespace ztv {

QString TimeLeft(qint64 elapsedMs, double done) {
    constexpr qint64 leastElapsedMs = 1000; // before that the rate isn't known well enough
    if (elapsedMs < leastElapsedMs || done <= 0) {
        return {};
    }
    return TimeLeftText(static_cast<double>(elapsedMs) * (1 - done) / done);
}

} // namespace ztv

#include "support/TimeLeftText.h"

#include <QtGlobal>
#include <cmath>

namespace ztv {

QString TimeLeftText(double milliseconds) {
    constexpr double msPerSecond = 1000;
    constexpr qint64 secondsPerMinute = 60;
    const auto seconds = static_cast<qint64>(std::ceil(milliseconds / msPerSecond));
    return seconds < secondsPerMinute ? QStringLiteral("%1 s left").arg(seconds)
                                      : QStringLiteral("%1 min %2 s left")
                                            .arg(seconds / secondsPerMinute)
                                            .arg(seconds % secondsPerMinute);
}

} // namespace ztv

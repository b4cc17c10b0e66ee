#include "cli/LocalTime.h"

#include <QDateTime>
#include <cstdlib>

namespace ztv {

namespace {

QDateTime Local(std::chrono::system_clock::time_point time) {
    using std::chrono::milliseconds;
    const auto sinceEpoch = std::chrono::duration_cast<milliseconds>(time.time_since_epoch());
    return QDateTime::fromMSecsSinceEpoch(sinceEpoch.count());
}

// Not Qt's: that writes UTC as "Z".
QString OffsetText(int seconds) {
    constexpr int secondsPerMinute = 60;
    constexpr int minutesPerHour = 60;
    const int minutes = std::abs(seconds) / secondsPerMinute;
    return QStringLiteral("%1%2:%3")
        .arg(QLatin1Char(seconds < 0 ? '-' : '+'))
        .arg(minutes / minutesPerHour, 2, 10, QLatin1Char('0'))
        .arg(minutes % minutesPerHour, 2, 10, QLatin1Char('0'));
}

} // namespace

QString IsoTime(std::chrono::system_clock::time_point time) {
    const QDateTime local = Local(time);
    return local.toString(QStringLiteral("yyyy-MM-ddTHH:mm:ss.zzz")) + OffsetText(local.offsetFromUtc());
}

QString TimeOfDay(std::chrono::system_clock::time_point time) {
    return Local(time).toString(QStringLiteral("HH:mm:ss.zzz"));
}

} // namespace ztv

#include "shell/LinkWords.h"

#include "model/LineTables.h"

#include <cstddef>
#include <cstdint>

namespace ztv {

namespace LinkWords {

namespace {

template <typename Table>
QString TextOf(const Table &table, std::int16_t index) {
    const bool isKnown = index >= 0 && static_cast<std::size_t>(index) < table.size();
    return isKnown ? QString::fromLatin1(table[static_cast<std::size_t>(index)].text) : QStringLiteral("?");
}

} // namespace

QString Duration(std::chrono::seconds time) {
    const auto seconds = time.count();
    constexpr int perMinute = 60;
    constexpr int perHour = 3600;
    if (seconds < perMinute) {
        return QStringLiteral("%1 s").arg(seconds);
    }
    if (seconds < perHour) {
        return QStringLiteral("%1 min %2 s").arg(seconds / perMinute).arg(seconds % perMinute);
    }
    return QStringLiteral("%1 h %2 min").arg(seconds / perHour).arg(seconds % perHour / perMinute);
}

QString LineSetting(const CommSettings &comm) {
    return TextOf(BaudTable, comm.baud) + u' ' + TextOf(ParityStopTable, comm.parityStop);
}

} // namespace LinkWords

} // namespace ztv

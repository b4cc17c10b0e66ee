#include "cli/Duration.h"

#include "cli/Failure.h"

#include <QRegularExpression>
#include <array>
#include <cstdint>

namespace ztv {

namespace {

struct Unit {
    const char *letter;
    std::chrono::seconds length;
};

using namespace std::chrono_literals;

constexpr std::array units = {Unit{"", 1s}, Unit{"s", 1s}, Unit{"m", 1min}, Unit{"h", 1h}, Unit{"d", 24h}};
constexpr std::chrono::hours longest = 3650 * 24h;

std::chrono::seconds UnitOf(const QString &letter) {
    for (const Unit &unit : units) {
        if (letter == QLatin1String(unit.letter)) {
            return unit.length;
        }
    }
    return 0s;
}

} // namespace

std::chrono::milliseconds DurationOf(const QString &text) {
    static const QRegularExpression pattern(QStringLiteral("^([0-9]{1,9})([smhd]?)$"));
    const QRegularExpressionMatch match = pattern.match(text.trimmed());
    const std::int64_t count = match.captured(1).toLongLong();
    const std::chrono::seconds time = count * UnitOf(match.captured(2));
    if (!match.hasMatch() || time <= 0s || time > longest) {
        throw Failure(
            ExitStatus::WrongUse,
            QStringLiteral("\"%1\" is no time to end after; use such as 90s, 10m, 8h or 7d, from 1s "
                           "to 3650d")
                .arg(text));
    }
    return time;
}

} // namespace ztv

#include "cli/DidYouMean.h"

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <utility>
#include <vector>

namespace ztv {

namespace {

// Returns the number of letters to insert, delete, replace or swap with the next that make one text the
// other.
qsizetype EditDistance(const QString &from, const QString &to) {
    const auto rowOf = [&](qsizetype start) {
        std::vector<qsizetype> row(static_cast<std::size_t>(to.size()) + 1);
        std::iota(row.begin(), row.end(), start);
        return row;
    };
    std::vector<qsizetype> before;
    std::vector<qsizetype> above;
    std::vector<qsizetype> row = rowOf(0);
    for (qsizetype i = 1; i <= from.size(); ++i) {
        before = std::exchange(above, std::exchange(row, rowOf(i)));
        for (qsizetype j = 1; j <= to.size(); ++j) {
            const auto at = static_cast<std::size_t>(j);
            const qsizetype replaced = above[at - 1] + (from[i - 1] == to[j - 1] ? 0 : 1);
            row[at] = std::min({above[at] + 1, row[at - 1] + 1, replaced});
            if (i > 1 && j > 1 && from[i - 1] == to[j - 2] && from[i - 2] == to[j - 1]) {
                row[at] = std::min(row[at], before[at - 2] + 1);
            }
        }
    }
    return row.back();
}

} // namespace

std::optional<QString> NearestName(const QString &text, const QStringList &names) {
    constexpr int part = 3;
    std::optional<QString> nearest;
    qsizetype least = text.size();
    for (const QString &name : names) {
        const qsizetype distance = EditDistance(text.toLower(), name.toLower());
        if (distance < least && distance <= name.size() / part) {
            least = distance;
            nearest = name;
        }
    }
    return nearest;
}

} // namespace ztv

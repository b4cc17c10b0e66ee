#include "cli/DidYouMean.h"

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <vector>

namespace ztv {

namespace {

// Returns the number of letters to insert, delete or replace that make one text the other.
qsizetype EditDistance(const QString &from, const QString &to) {
    std::vector<qsizetype> row(static_cast<std::size_t>(to.size()) + 1);
    std::iota(row.begin(), row.end(), 0);
    for (qsizetype i = 1; i <= from.size(); ++i) {
        qsizetype diagonal = row[0]++;
        for (qsizetype j = 1; j <= to.size(); ++j) {
            const auto at = static_cast<std::size_t>(j);
            const qsizetype replaced = diagonal + (from[i - 1] == to[j - 1] ? 0 : 1);
            diagonal = row[at];
            row[at] = std::min({row[at] + 1, row[at - 1] + 1, replaced});
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

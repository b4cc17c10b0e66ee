#include "help/HelpSearch.h"

#include <algorithm>
#include <utility>

namespace ztv {

namespace HelpSearch {

QStringList Words(const QString &query) {
    return query.simplified().split(u' ', Qt::SkipEmptyParts);
}

std::vector<std::size_t> Find(const std::vector<Page> &pages, const QString &query) {
    const QStringList words = Words(query);
    constexpr qsizetype aTitle = 1000; // outweighs any count in a text
    std::vector<std::pair<qsizetype, std::size_t>> weights;
    for (std::size_t place = 0; place < pages.size() && !words.isEmpty(); ++place) {
        const Page &page = pages[place];
        qsizetype weight = 0;
        const bool hasAll = std::all_of(words.begin(), words.end(), [&](const QString &word) {
            const qsizetype times = page.text.count(word, Qt::CaseInsensitive);
            const qsizetype inTitle = page.title.count(word, Qt::CaseInsensitive);
            weight += times + aTitle * inTitle;
            return times + inTitle > 0;
        });
        if (hasAll) {
            weights.emplace_back(weight, place);
        }
    }
    std::stable_sort(weights.begin(), weights.end(),
                     [](const auto &one, const auto &other) { return one.first > other.first; });
    std::vector<std::size_t> found(weights.size());
    std::transform(weights.begin(), weights.end(), found.begin(),
                   [](const auto &weight) { return weight.second; });
    return found;
}

} // namespace HelpSearch

} // namespace ztv

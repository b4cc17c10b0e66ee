#pragma once

#include <QString>
#include <QStringList>
#include <cstddef>
#include <vector>

namespace ztv {

// Full-text search of the help window, case-insensitive.
namespace HelpSearch {

struct Page {
    QString title;
    QString text;
};

// Returns the words of a query.
QStringList Words(const QString &query);

// Returns the indices of the pages that contain all words of the query, also as parts of longer words: pages
// with a word in their title first, then those with the most occurrences. Returns none for an empty query.
std::vector<std::size_t> Find(const std::vector<Page> &pages, const QString &query);

} // namespace HelpSearch

} // namespace ztv

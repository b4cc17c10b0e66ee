#pragma once

#include <QString>
#include <QStringList>
#include <vector>

// The search of the help's window: full text, in either case of letters.
namespace HelpSearch {

struct Page {
    QString title;
    QString text;
};

// The words that are searched for.
QStringList Words(const QString &query);

// The places of the pages that hold all words of the query, also as the start or middle of longer ones; those
// with a word in their title first, then those that hold the words oftenest. None for an empty query.
std::vector<std::size_t> Find(const std::vector<Page> &pages, const QString &query);

} // namespace HelpSearch

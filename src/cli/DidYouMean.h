#pragma once

#include <QString>
#include <QStringList>
#include <optional>

namespace ztv {

// Returns the name that differs least from a text, in letters to insert, delete, replace or
// swap with the next; none if the least
// difference is more than a third of the name. Case doesn't count.
std::optional<QString> NearestName(const QString &text, const QStringList &names);

} // namespace ztv

#pragma once

#include <QString>

namespace PathFunctions {

// The part of the path after the last backslash: all of it where there is none. A forward slash doesn't
// count.
QString FileNameOfPath(const QString &path);

} // namespace PathFunctions

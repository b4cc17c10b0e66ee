#pragma once

#include <QString>

namespace ztv {

namespace PathFunctions {

// Returns the part of the path after the last backslash, or all of it where there is none. A forward slash
// doesn't count.
QString FileNameOfPath(const QString &path);

} // namespace PathFunctions

} // namespace ztv

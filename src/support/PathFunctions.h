#pragma once

#include <QString>

namespace PathFunctions {

// What follows the last backslash of the path: all of it where there is none. A forward slash parts nothing.
QString FileNameOfPath(const QString &path);

} // namespace PathFunctions

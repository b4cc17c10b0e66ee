#pragma once

#include <QString>

namespace ztv {

namespace FileFunctions {

// Returns true when the path names an ordinary file, or a link to one: not a folder, a device or a pattern.
// On Windows a file with the hidden attribute doesn't count. Elsewhere there is no such attribute, and a file
// whose name starts with a point counts.
bool FileExists(const QString &path);

} // namespace FileFunctions

} // namespace ztv

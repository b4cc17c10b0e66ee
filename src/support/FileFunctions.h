#pragma once

#include <QString>

namespace FileFunctions {

// True when the path names an ordinary file, or a link to one: no folder, no device, no pattern. On Windows
// a file with the hidden attribute doesn't count; elsewhere there is no such attribute, and one whose name
// starts with a point does.
bool FileExists(const QString &path);

} // namespace FileFunctions

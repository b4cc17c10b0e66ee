#pragma once

#include <QString>

namespace ztv {

// The program's version: major, minor and revision, separated by points.
QString ProgramVersion();

} // namespace ztv

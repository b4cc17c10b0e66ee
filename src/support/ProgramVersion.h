#pragma once

#include <QString>

// The program's own version: major, minor and revision, parted by points.
QString ProgramVersion();

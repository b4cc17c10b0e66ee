#pragma once

#include <QString>

// The program's version: major, minor and revision, separated by points.
QString ProgramVersion();

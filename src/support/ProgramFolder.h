#pragma once

#include <QString>

// The folder of the files that come with the program: ZTVLINK_HOME when set, otherwise the executable's.
QString ProgramFolder();

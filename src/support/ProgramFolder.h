#pragma once

#include <QString>

// The folder of the files that come with the program: ZTVLINK_HOME when set, otherwise the executable's.
QString ProgramFolder();

// Keeps a relative ZTVLINK_HOME naming the folder that it names now, wherever the current folder moves to.
void FixProgramFolder();

// The folder for the files that the program makes beside its own: the program folder, or the user's data
// folder where that isn't writable.
QString FolderForOwnFiles(const QString &programFolder);

// The folder of what the program keeps for this user; it is made if need be.
QString UserDataFolder();

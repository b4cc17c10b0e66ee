#pragma once

#include <QString>

namespace ztv {

// Returns the folder of the files installed with the program: ZTVLINK_HOME when set, otherwise the
// executable's folder.
QString ProgramFolder();

// Makes a relative ZTVLINK_HOME absolute, so that it names the same folder after the current folder changes.
void FixProgramFolder();

// Returns the folder for the files that the program creates: the program folder, or the user's data folder
// where that isn't writable.
QString FolderForOwnFiles(const QString &programFolder);

// Returns the folder for the backups of sensors' values, of this user. The first backup creates it.
QString BackupFolder();

// Returns the folder of the program's data for this user; creates it if needed.
QString UserDataFolder();

} // namespace ztv

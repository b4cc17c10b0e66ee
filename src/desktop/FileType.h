#pragma once

#include <QString>

namespace ztv {

// Registers the type of the settings files on the present system.
namespace FileType {

// Returns the path of the program as in the command that opens a file: on Windows without ".exe".
QString ThisApplication();

// Makes a double click on a settings file open the application, unless an installed package has done so, the
// extension is bound to another program, or the system doesn't permit it. Called at each start; takes
// microseconds if everything is done. `iconFile` is an SVG. Never changes existing entries: to recreate them,
// for example for a program that has moved, the user deletes the keys and, on a desktop, ztv-link.desktop.
void Register(const QString &application, const QString &iconFile);

} // namespace FileType

} // namespace ztv

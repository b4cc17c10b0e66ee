#pragma once

#include <QString>

// The settings files on the system that the program runs on.
namespace FileType {

// The path of the program, as the command that opens a file names it: on Windows without ".exe".
QString ThisApplication();

// Has a double click on a settings file open the application, unless an installed package did so already,
// something else is bound to it, or the system doesn't let us. Called in each start; a start that finds all
// done takes microseconds. `iconFile` is an SVG. What is there is never touched: to have it made anew, as for
// a program that has moved, its user deletes the keys and, on a desktop, ztv-link.desktop.
void Register(const QString &application, const QString &iconFile);

} // namespace FileType

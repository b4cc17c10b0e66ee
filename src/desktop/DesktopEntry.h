#pragma once

#include <QByteArray>
#include <QString>

// The desktop's entry of the program: its name, its icon, and how it opens which files.
namespace DesktopEntry {

struct Program {
    QString name;
    QString application; // the path of its executable
    QString icon;        // a name in the icon theme
    QString mimeType;
};

QByteArray Text(const Program &program);

// The Exec line's value that starts the application with one file.
QString Exec(const QString &application);

} // namespace DesktopEntry

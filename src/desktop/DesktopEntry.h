#pragma once

#include <QByteArray>
#include <QString>

namespace ztv {

// The program's desktop entry: its name, its icon, and how it opens its files.
namespace DesktopEntry {

struct Program {
    QString name;
    QString application; // the path of its executable
    QString icon;        // a name in the icon theme
    QString mimeType;
};

QByteArray Text(const Program &program);

// Returns the value of the Exec line, which starts the application with one file.
QString Exec(const QString &application);

} // namespace DesktopEntry

} // namespace ztv

#pragma once

#include <QByteArray>
#include <QString>

// Publishes a file type, and the program that opens its files, on a desktop that follows the freedesktop
// conventions. All of it is the user's own and lies below XDG_DATA_HOME.
namespace DesktopFileType {

struct Binding {
    QString extension; // with its point
    QString className;
    QString description;
    QString application;
};

// True when the program's desktop entry is there: the user's own, which is the last that Publish writes, or
// that of an installed package. What a package brings goes with it; what was written into a user's folders
// would stay.
bool IsPublished();

// Writes the MIME type, the icon (an SVG; none when empty) and the desktop entry, and has the desktop's
// tools take note of them, without waiting for it. What fails is left undone.
void Publish(const Binding &binding, const QByteArray &icon);

} // namespace DesktopFileType

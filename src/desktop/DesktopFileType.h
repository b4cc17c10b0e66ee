#pragma once

#include <QByteArray>
#include <QString>

namespace ztv {

// Publishes a file type, and the program that opens its files, on a desktop that follows the freedesktop
// conventions. All files are the user's own, below XDG_DATA_HOME.
namespace DesktopFileType {

struct Binding {
    QString extension; // with its dot
    QString className;
    QString description;
    QString application;
};

// Returns true if the program's desktop entry exists: the user's own, which Publish writes last, or that of
// an installed package. Removing a package removes its files; files in a user's folders would stay.
bool IsPublished();

// Writes the icon (an SVG; none if empty), the MIME type and the desktop entry, then starts the desktop's
// tools that update its databases, without waiting for them. Stops at a file that can't be written, without
// reporting it.
void Publish(const Binding &binding, const QByteArray &icon);

} // namespace DesktopFileType

} // namespace ztv

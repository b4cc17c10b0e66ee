#pragma once

#include <QByteArray>
#include <QString>

namespace ztv {

// The settings files' entry in the desktop's database of MIME types: the one to publish, and the existing
// one.
namespace MimePackage {

// Returns the description of the type. It recognises files by the extension, and under any other name by the
// application_id in the header of the SQLite database.
QByteArray Text(const QString &extension, const QString &description);

// Returns true if the system's database binds the extension, or if the user's own binds it to a type other
// than the program's.
bool IsBoundElsewhere(const QString &extension);

} // namespace MimePackage

} // namespace ztv

#pragma once

#include <QByteArray>
#include <QString>

// The settings files' entry in the desktop's database of MIME types: the one to publish, and the one that is
// there.
namespace MimePackage {

// The description of the type: its files are told by the extension, and under any other name by the
// application_id in the head of the database that they are.
QByteArray Text(const QString &extension, const QString &description);

// True when the database of the system binds the extension, or the user's own binds it to a type that isn't
// the program's.
bool IsBoundElsewhere(const QString &extension);

} // namespace MimePackage

#pragma once

#include <QByteArray>
#include <QString>

namespace ztv {

// Replaces the file's content in one step: whatever happens meanwhile, either the old file or the new one is
// there. Also replaces a read-only file, and another user's file in a folder that this user may write.
// Follows links. Fault (file) on failure; the old file then stays as it was.
void ReplaceContent(const QString &fileName, const QByteArray &content);

// The same without a fault: returns false on failure.
bool TryReplaceContent(const QString &fileName, const QByteArray &content);

} // namespace ztv

#pragma once

#include <QByteArray>
#include <QString>

// Makes `content` the whole of the file, in one step: whatever happens meanwhile, there is either the old
// file or the new one. A read-only file is replaced as well, and so is somebody else's in a folder that the
// user may write. Links are followed. Fault (file) when it can't be done; the old file is then left as it
// was.
void ReplaceFile(const QString &fileName, const QByteArray &content);

// The same for whoever can do without; false when it can't be done.
bool TryReplaceFile(const QString &fileName, const QByteArray &content);

#pragma once

#include <QByteArray>
#include <QString>

namespace WholeFile {

// Replaces the file's content in one step. False where that fails, as on a full disk: what was there
// before, if anything, is then there still.
bool Write(const QString &path, const QByteArray &content);

} // namespace WholeFile

#pragma once

#include <QByteArray>
#include <QString>

namespace sim {

// Replaces the file in one step. Returns what went wrong, or an empty text.
QString WriteWholeFile(const QString &fileName, const QByteArray &content);

} // namespace sim

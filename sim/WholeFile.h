#pragma once

#include <QByteArray>
#include <QString>

namespace sim {

// Replaces the file in one step. Returns a description of the error, or an empty text.
QString WriteWholeFile(const QString &fileName, const QByteArray &content);

} // namespace sim

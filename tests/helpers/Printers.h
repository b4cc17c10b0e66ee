#pragma once

#include <QByteArray>
#include <QString>
#include <ostream>

namespace ztv {

// Prints texts readably in failed comparisons.
inline void PrintTo(const QString &text, std::ostream *out) {
    *out << '"' << text.toStdString() << '"';
}
inline void PrintTo(const QByteArray &bytes, std::ostream *out) {
    *out << bytes.toHex(' ').constData();
}

} // namespace ztv

#pragma once

#include <QString>
#include <QStringList>

namespace ztv {

// Returns the first `most` texts in a line, and how many more there are: "a, b and 3 more".
inline QString ListText(const QStringList &texts, qsizetype most) {
    const QString shown = texts.mid(0, most).join(QStringLiteral(", "));
    const qsizetype more = texts.size() - most;
    return more > 0 ? QStringLiteral("%1 and %2 more").arg(shown, QString::number(more)) : shown;
}

} // namespace ztv

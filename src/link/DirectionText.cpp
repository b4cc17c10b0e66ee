#include "link/DirectionText.h"

#include "link/ListText.h"

#include <QFileInfo>

namespace ztv {

namespace {

constexpr qsizetype mostNames = 4;

QString Changes(qsizetype count) {
    return count == 1 ? QStringLiteral("1 change") : QStringLiteral("%1 changes").arg(count);
}

// Names the origin of the values that Write sends.
QString Origin(const DirectionFacts &facts) {
    if (facts.sensor) {
        return QStringLiteral("values read from sensor %1").arg(*facts.sensor);
    }
    return facts.file.isEmpty() ? QStringLiteral("factory values") : QFileInfo(facts.file).fileName();
}

QString LostOnRead(const QStringList &edits) {
    if (edits.isEmpty()) {
        return {};
    }
    const QString verb = edits.size() == 1 ? QStringLiteral("isn't") : QStringLiteral("aren't");
    return QStringLiteral("%1 that %2 in a file would be lost: %3.")
        .arg(Changes(edits.size()), verb, ListText(edits, mostNames));
}

QString LostOnWrite(const std::optional<QString> &backupFor) {
    return backupFor ? QStringLiteral(
                           "The sensor's own values would be replaced. Those last read from sensor %1 go "
                           "to a backup first.")
                           .arg(*backupFor)
                     : QStringLiteral(
                           "The sensor's own values would be lost: no sensor was read yet, so that there "
                           "is nothing to back up. Read first to keep them.");
}

} // namespace

DirectionText TextOf(const DirectionFacts &facts) {
    const QString edits =
        facts.edits.isEmpty() ? QString() : QStringLiteral(", ") + Changes(facts.edits.size());
    return {.question = QStringLiteral("Which values count?"),
            .read = QStringLiteral("Sensor to program: %1 values are read. The sensor isn't changed.")
                        .arg(facts.values),
            .lostOnRead = LostOnRead(facts.edits),
            .write =
                QStringLiteral("Program (%1%2) to sensor: all %3 values are written, also address and line "
                               "setting.")
                    .arg(Origin(facts), edits, QString::number(facts.values)),
            .lostOnWrite = LostOnWrite(facts.backupFor)};
}

} // namespace ztv

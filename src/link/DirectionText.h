#pragma once

#include <QString>
#include <QStringList>
#include <cstdint>
#include <optional>

namespace ztv {

// The facts that decide on the texts beside the question for a connect's direction.
struct DirectionFacts {
    std::int16_t values = 0;          // that a connect reads or writes
    std::optional<QString> sensor;    // whose values the table has, by its serial number
    QString file;                     // whose values the table has; empty for none
    QStringList edits;                // names of the parameters that no sensor and no file has so
    std::optional<QString> backupFor; // the sensor whose values a backup can keep; none if none was read
};

// The texts beside the question for a connect's direction: what each answer does, and what would be lost.
struct DirectionText {
    QString question;
    QString read;
    QString lostOnRead; // empty if nothing is
    QString write;
    QString lostOnWrite;
};

DirectionText TextOf(const DirectionFacts &facts);

} // namespace ztv

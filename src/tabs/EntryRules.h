#pragma once

#include "model/ClassZentrova.h"
#include "support/UserDialogs.h"

#include <QObject>
#include <QString>
#include <cstdint>

namespace ztv {

// Validates a typed value before it is written to the table and the sensor. All entry boxes share one
// instance.
class EntryRules : public QObject {
    Q_OBJECT

public:
    EntryRules(ClassZentrova &zentrova, UserDialogs &dialogs);

    // Validates a text typed for a parameter, with or without its unit, and writes its value. Returns false,
    // with the table unchanged, after showing the user the reason.
    bool ValidateAndWriteText(const QString &text, std::int16_t tag);

    // Returns true if a new raw value is consistent with the other distances and diameters; otherwise shows
    // the user the reason and returns false. A value of any other parameter is always consistent.
    bool CheckParamRelation(std::int16_t tag, std::int32_t raw);

    const ClassZentrova &Zentrova() const { return zentrova_; }

Q_SIGNALS:
    // A value was accepted; `text` is its displayed form.
    void Written(std::int16_t tag, const QString &text);

private:
    void ShowConflict(const QString &conflict);

    ClassZentrova &zentrova_;
    UserDialogs &dialogs_;
};

} // namespace ztv

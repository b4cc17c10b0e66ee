#pragma once

#include "model/ClassZentrova.h"
#include "support/UserDialogs.h"

#include <QObject>
#include <QString>
#include <cstdint>

// Validates a typed value before it goes into the table and to the sensor. All entry boxes share one of
// these.
class EntryRules : public QObject {
    Q_OBJECT

public:
    EntryRules(ClassZentrova &zentrova, UserDialogs &dialogs);

    // Takes a text typed for a parameter, with or without its unit. True: it was accepted and written.
    // False: the user has been told why not, and the table is as it was. A write may turn the event loop.
    bool ValidateAndWriteText(const QString &text, std::int16_t tag);

    // True when a new raw value fits with the distances and diameters beside it; false after the user has
    // been told why not. Any parameter but these fits.
    bool CheckParamRelation(std::int16_t tag, std::int32_t raw);

    const ClassZentrova &Zentrova() const { return zentrova_; }

Q_SIGNALS:
    // A value was accepted; `text` is how it is displayed.
    void Written(std::int16_t tag, const QString &text);

private:
    ClassZentrova &zentrova_;
    UserDialogs &dialogs_;
};

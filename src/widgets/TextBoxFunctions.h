#pragma once

#include "support/UserDialogs.h"

#include <QChar>
#include <QKeyEvent>
#include <QLineEdit>
#include <QString>

// Functions that all forms share for their entry boxes.
namespace TextBoxFunctions {

// Selects the whole text, so that the next key replaces it.
void SelectAllText(QLineEdit &box);

// The digit of the key, also on the numeric pad; a null character for any other key.
QChar DigitOf(const QKeyEvent &key);

// True when the box holds a number from `minimum` to `maximum`, both included; with `round` the text becomes
// that of the number as a whole one. Otherwise it tells the user the limits under the field's name and leaves
// box and focus alone.
bool ValidateNumericEntry(QLineEdit &box, const QString &name, double minimum, double maximum, bool round,
                          UserDialogs &dialogs);

} // namespace TextBoxFunctions

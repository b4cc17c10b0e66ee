#pragma once

#include "support/UserDialogs.h"

#include <QChar>
#include <QKeyEvent>
#include <QLineEdit>
#include <QString>

namespace ztv {

// Functions that all forms share for their entry boxes.
namespace TextBoxFunctions {

// Selects the whole text, so that the next key replaces it.
void SelectAllText(QLineEdit &box);

// Returns the digit of the key, also of the numeric pad; a null character for any other key.
QChar DigitOf(const QKeyEvent &key);

// Returns true if the box contains a number from `minimum` to `maximum`, both included; with `round`,
// replaces the text by the number rounded to a whole one. Otherwise shows the user the field's name and its
// limits, leaves the box and the focus unchanged and returns false.
bool ValidateNumericEntry(QLineEdit &box, const QString &name, double minimum, double maximum, bool round,
                          UserDialogs &dialogs);

} // namespace TextBoxFunctions

} // namespace ztv

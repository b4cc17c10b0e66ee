#pragma once

#include "tabs/EntryRules.h"

#include <QLineEdit>

// Takes the text of a box for the parameter that its property "Tag" names, as EntryRules does. On false the
// whole text is selected. The event loop may have turned.
bool ValidateAndWriteTextBoxVal(QLineEdit &box, EntryRules &rules);

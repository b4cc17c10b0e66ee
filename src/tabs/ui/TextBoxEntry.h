#pragma once

#include "tabs/EntryRules.h"

#include <QLineEdit>

namespace ztv {

// Validates and writes the text of a box by EntryRules::ValidateAndWriteText; the property "Tag" of the box
// names the parameter. Selects the whole text before it returns false.
bool ValidateAndWriteTextBoxVal(QLineEdit &box, EntryRules &rules);

} // namespace ztv

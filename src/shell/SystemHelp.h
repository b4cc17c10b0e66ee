#pragma once

#include "help/HelpEngine.h"
#include "support/UserDialogs.h"

#include <memory>

namespace ztv {

// Returns the help engine of this system: its HTML Help if it has one and the compiled file is in the
// program's folder, otherwise the program's own help window.
std::unique_ptr<HelpEngine> SystemHelp(const QString &programFolder, UserDialogs &dialogs);

} // namespace ztv

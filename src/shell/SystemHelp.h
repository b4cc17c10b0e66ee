#pragma once

#include "help/HelpEngine.h"
#include "support/UserDialogs.h"

#include <memory>

// The help engine of this system: its own HTML Help where it has one and the compiled file lies in the
// program's folder, otherwise the program's window.
std::unique_ptr<HelpEngine> SystemHelp(const QString &programFolder, UserDialogs &dialogs);

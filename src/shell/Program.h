#pragma once

#include "help/HelpEngine.h"
#include "support/Fault.h"
#include "support/SettingsStore.h"
#include "support/UserDialogs.h"

#include <QString>
#include <functional>
#include <vector>

namespace ztv {

class FormMain;

// The dependencies of the program, except the application object.
struct ProgramStart {
    UserDialogs &dialogs;
    SettingsStore &settings;
    HelpEngine &helpEngine;
    QString programFolder;
    std::vector<QString> arguments; // of the command line, for CommandLine::Parse
    // The program that a double click on a settings file starts; empty: registers nothing.
    QString application = {};
    QString backupFolder = {}; // as FormMain::Dependencies has it
};

// Shows the user a fault that ends the program. Rescues unsaved changes first if there is a form.
void ShowFault(UserDialogs &dialogs, const Fault &fault, FormMain *form = nullptr);

// Shows the main form and runs until it closes. Returns the exit status: 1 if the start failed, after a box
// with the reason. Calls `onShown` once the main form is visible.
int RunProgram(const ProgramStart &start, const std::function<void(FormMain &)> &onShown);

} // namespace ztv

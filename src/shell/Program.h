#pragma once

#include "help/HelpEngine.h"
#include "support/Fault.h"
#include "support/SettingsStore.h"
#include "support/UserDialogs.h"

#include <QString>
#include <functional>
#include <vector>

class FormMain;

// The program from its start to its end, but for the application object.
struct ProgramStart {
    UserDialogs &dialogs;
    SettingsStore &settings;
    HelpEngine &helpEngine;
    QString programFolder;
    std::vector<QString> arguments; // of the command line, for CommandLine::Parse
    QString application = {}; // what a double click on a settings file is to start; empty to register nothing
};

// Tells the user of a fault that ends the program. Unsaved changes are rescued first, if there is a form yet.
void ShowFault(UserDialogs &dialogs, const Fault &fault, FormMain *form = nullptr);

// Shows the main form and runs until it closes. Returns the exit status: 1 when the start failed, after a
// box that says why. `onShown` is told the main form once it shows.
int RunProgram(const ProgramStart &start, const std::function<void(FormMain &)> &onShown);

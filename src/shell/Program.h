#pragma once

#include "support/Fault.h"
#include "support/SettingsStore.h"
#include "support/UserDialogs.h"

#include <QString>
#include <functional>

class QWidget;

// The program from its start to its end, but for the application object.
struct ProgramStart {
    UserDialogs &dialogs;
    SettingsStore &settings;
    QString programFolder;
    QString commandText;
    QString application = {}; // what a double click on a settings file is to start; empty to register nothing
};

// Tells the user of a fault that ends the program.
void ShowFault(UserDialogs &dialogs, const Fault &fault);

// Shows the main form and runs until it closes. Returns the exit status: 1 when the start failed, after a
// box that says why. `onShown` is told the main form once it shows.
int RunProgram(const ProgramStart &start, const std::function<void(QWidget &)> &onShown);

#pragma once

#include "cli/Arguments.h"
#include "cli/Failure.h"
#include "support/SettingsStore.h"

#include <cstdio>

namespace ztv {

// The settings, files and streams of a command.
struct Surroundings {
    const SettingsStore &settings; // for what the arguments leave out
    QString programFolder;         // of Presets.fil
    std::FILE *results = stdout;
    std::FILE *messages = stderr;
};

// Runs the command. With several addresses it runs for each sensor; one that fails doesn't stop the others,
// and the status is that of the first failure. Throws a Failure where nothing can be done at all.
ExitStatus RunCommand(const Arguments &arguments, const Surroundings &around);

// Prints a line for a person.
void PrintMessage(std::FILE *messages, const QString &text);

} // namespace ztv

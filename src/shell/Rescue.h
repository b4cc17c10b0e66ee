#pragma once

#include "model/ClassZentrova.h"

#include <QString>

// For a program that can't go on: saves changes that nobody saved to a file of their own in the user's data
// folder, or where that can't be written in the home folder or the one for temporary files. Returns what to
// tell the user of that; nothing where nothing was unsaved.
QString RescueUnsavedChanges(ClassZentrova &zentrova);

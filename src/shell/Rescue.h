#pragma once

#include "model/ClassZentrova.h"

#include <QString>

namespace ztv {

// Saves unsaved changes, for a program that can't continue, to a new file in the user's data folder or, if
// that can't be written, in the home folder or the folder for temporary files. Returns the message for the
// user; empty if nothing was unsaved.
QString RescueUnsavedChanges(ClassZentrova &zentrova);

} // namespace ztv

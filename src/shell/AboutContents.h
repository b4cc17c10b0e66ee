#pragma once

#include "model/ClassZentrova.h"
#include "shell/FormAbout.h"
#include "support/SettingsStore.h"

namespace ztv {

// Returns the contents of the about box: the program's version, the sensor's versions from the table, and the
// maker from the settings.
FormAbout::Contents AboutContents(const ClassZentrova &zentrova, const SettingsStore &settings);

} // namespace ztv

#pragma once

#include "model/ClassZentrova.h"
#include "shell/FormAbout.h"
#include "support/SettingsStore.h"

// The contents of the about box: the program's version, the sensor's as the table holds them, and the maker
// from the settings.
FormAbout::Contents AboutContents(const ClassZentrova &zentrova, const SettingsStore &settings);

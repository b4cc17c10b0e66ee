#pragma once

#include "model/ClassZentrova.h"
#include "shell/FormAbout.h"
#include "support/SettingsStore.h"

// What the about box shows: the program's version, the sensor's as the table holds them, and what the
// settings say of the maker.
FormAbout::Contents AboutContents(const ClassZentrova &zentrova, const SettingsStore &settings);

#pragma once

#include "link/CommSettings.h"
#include "support/SettingsStore.h"

#include <QString>
#include <cstdint>

namespace ztv {

// The communication settings that one run stores for the next.

// Returns a stored whole number, clamped to the range, or the fallback if the text isn't numeric. Throws a
// Fault (overflow) for a number that doesn't fit 16 bits; it names the setting, its store and the remedy.
std::int16_t ReadRegistryInteger(const SettingsStore &store, const QString &section, const QString &key,
                                 std::int16_t lowest, std::int16_t highest, std::int16_t fallback);

CommSettings ReadCommSettings(const SettingsStore &store);
// The writers return false if the store can't be written.
bool WriteCommSettings(SettingsStore &store, const CommSettings &settings);

} // namespace ztv

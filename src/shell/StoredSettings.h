#pragma once

#include "link/CommSettings.h"
#include "support/SettingsStore.h"

#include <QString>
#include <cstdint>

namespace ztv {

// The settings that one run stores for the next.

// In twips.
struct WindowPlace {
    double top = 0;
    double left = 0;
    double height = 8940;
    double width = 10200;
};

enum class WindowState { Normal = 0, Minimised = 1, Maximised = 2 };

// Returns a stored whole number, clamped to the range, or the fallback if the text isn't numeric. Throws a
// Fault (overflow) for a number that doesn't fit 16 bits; it names the setting, its store and the remedy.
std::int16_t ReadRegistryInteger(const SettingsStore &store, const QString &section, const QString &key,
                                 std::int16_t lowest, std::int16_t highest, std::int16_t fallback);

CommSettings ReadCommSettings(const SettingsStore &store);
// The writers return false if the store can't be written.
bool WriteCommSettings(SettingsStore &store, const CommSettings &settings);

WindowPlace ReadWindowPlace(const SettingsStore &store);
bool WriteWindowPlace(SettingsStore &store, const WindowPlace &place);

WindowState ReadWindowState(const SettingsStore &store);
bool WriteWindowState(SettingsStore &store, WindowState state);

} // namespace ztv

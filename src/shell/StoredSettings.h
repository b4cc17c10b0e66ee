#pragma once

#include "support/SettingsStore.h"

namespace ztv {

// Store the place and state of the window for the next run.

// In twips.
struct WindowPlace {
    double top = 0;
    double left = 0;
    double height = 8940;
    double width = 10200;
};

enum class WindowState { Normal = 0, Minimised = 1, Maximised = 2 };

// The writers return false if the store can't be written.

WindowPlace ReadWindowPlace(const SettingsStore &store);
bool WriteWindowPlace(SettingsStore &store, const WindowPlace &place);

WindowState ReadWindowState(const SettingsStore &store);
bool WriteWindowState(SettingsStore &store, WindowState state);

} // namespace ztv

#pragma once

#include "shell/StoredSettings.h"

#include <optional>

class QWidget;

namespace ztv {

// Restores the main window's place from the last run, and stores it for the next one.
class WindowPlacement {
public:
    // REQUIRES: both outlive this.
    WindowPlacement(QWidget &window, SettingsStore &store) : window_(window), store_(store) {}

    // Sets the window's place and size to those of the last run. Moves the window to a reachable place if its
    // title would be outside every screen.
    void Restore();

    // Shows the window minimised, maximised or neither, as at the end of the last run.
    void Show();

    // Fills the screen with the window, or returns it to what it was: maximised or not.
    void ToggleFullScreen();

    // Stores nothing for a minimised window, and only the state for a maximised one. A window that fills the
    // screen counts as what it was before; if the desktop made it so, its last stored place stays. Returns
    // false if the store can't be written.
    bool Store();

private:
    WindowPlace Place() const;

    QWidget &window_;
    SettingsStore &store_;
    std::optional<WindowPlace> beforeFullScreen_; // by ToggleFullScreen
    WindowState storedState_ = WindowState::Normal;
};

} // namespace ztv

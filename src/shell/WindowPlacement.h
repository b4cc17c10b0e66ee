#pragma once

#include "shell/StoredSettings.h"

class QWidget;

// Puts the main window where the last run left it, and stores where this one leaves it.
class WindowPlacement {
public:
    // Both must outlive it.
    WindowPlacement(QWidget &window, SettingsStore &store) : window_(window), store_(store) {}

    // Gives the window its place and its size: those of the last run, or, if that is off every screen by now,
    // a place where it can be reached.
    void Restore();

    // Shows the window minimised, maximised or neither, as the last run left it.
    void Show();

    // Of a window that is minimised nothing is stored, of one that is maximised only that it is. False where
    // the store can't be written.
    bool Store();

private:
    QWidget &window_;
    SettingsStore &store_;
    WindowState storedState_ = WindowState::Normal;
};

#pragma once

#include <QAction>
#include <QIcon>
#include <QMainWindow>
#include <QString>
#include <QToolBar>
#include <cstddef>
#include <functional>
#include <set>

namespace ztv {

// The menus and the toolbar of the main form. An entry is disabled until SetHandler.
class MainCommands {
public:
    explicit MainCommands(QMainWindow &window);

    // Returns the menu entry of that name. REQUIRES: it exists.
    QAction &Menu(const char *name) const;

    // Returns the toolbar's button with that key. REQUIRES: it exists.
    QAction &Button(const char *key) const;

    // Returns the command that fills the screen. It has a key, but no entry in the menus, which are given.
    QAction &FullScreen() const { return *fullScreen_; }

    // Makes the toolbar lower where the screen has little room, or as high as usual.
    void SaveRoom(bool wanted);

    // Enables the entry and makes it run `work`, as DeferredWork does.
    void SetHandler(QAction &action, std::function<void()> work);

    // Gives each entry that can be disabled the reason, for its tool tip.
    void ExplainDisabled();

    // Enables the entries that have work, and marks "Online", by the state of the link.
    void ShowLinkState(bool online);

    // Marks the sensor's save with the number of changes that it would store; 0 removes the mark.
    void ShowUnsaved(std::size_t count);

    // Returns the state that is shown.
    bool IsOnline() const { return online_; }

private:
    void BuildMenus();
    void BuildToolbar();
    QAction &Find(const QString &name) const;

    QMainWindow &window_;
    QToolBar *toolbar_ = nullptr;
    QAction *fullScreen_;
    std::set<const QAction *> withWork_;
    QIcon saveIcon_;
    QIcon markedSaveIcon_;
    bool online_ = false;
};

} // namespace ztv

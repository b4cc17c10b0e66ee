#pragma once

#include <QAction>
#include <QMainWindow>
#include <QString>
#include <functional>
#include <set>

// The menus and the toolbar of the main form. An entry is disabled until somebody gives it its work.
class MainCommands {
public:
    explicit MainCommands(QMainWindow &window);

    // The menu entry of that name; it must exist.
    QAction &Menu(const char *name) const;

    // The toolbar's button with that key; it must exist.
    QAction &Button(const char *key) const;

    // Enables the entry and has it do that, as DeferredWork does.
    void GiveWork(QAction &action, std::function<void()> work);

    // Enables what has its work, and marks "Online", by whether the link is open.
    void ShowLinkState(bool online);

private:
    void BuildMenus();
    void BuildToolbar();
    QAction &Find(const QString &name) const;

    QMainWindow &window_;
    std::set<const QAction *> withWork_;
    bool online_ = false;
};

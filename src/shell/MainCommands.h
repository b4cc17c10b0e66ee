#pragma once

#include <QAction>
#include <QMainWindow>
#include <QString>

// The menus and the toolbar of the main form. An entry is disabled until somebody gives it its work.
class MainCommands {
public:
    explicit MainCommands(QMainWindow &window);

    // The menu entry of that name; it must exist.
    QAction &Menu(const char *name) const;

    // The toolbar's button with that key; it must exist.
    QAction &Button(const char *key) const;

private:
    void BuildMenus();
    void BuildToolbar();
    QAction &Find(const QString &name) const;

    QMainWindow &window_;
};

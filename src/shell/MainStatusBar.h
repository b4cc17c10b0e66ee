#pragma once

#include "shell/StatusWatch.h"

#include <QMainWindow>
#include <QObject>
#include <cstdint>
#include <functional>

class QLabel;

namespace ztv {

class MainCommands;
class StatusBarCells;
class UnsavedList;

// The status bar of the main form: the text of the link, the cells with their facts, and the list of what
// isn't saved in the sensor, of which the toolbar's button has a mark.
class MainStatusBar : public QObject {
    Q_OBJECT

public:
    // REQUIRES: `watched` outlives this. `commands` has its handlers.
    MainStatusBar(QMainWindow &window, MainCommands &commands, const StatusWatch::Dependencies &watched);

    // As StatusWatch::Update.
    void Update() { watch_.Update(); }

    // Opens the list of what isn't saved above its cell.
    void ListUnsaved();

    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    void Pressed(StatusCell::Kind kind);
    void FileChangesTurned(); // as that of StatusWatch

private:
    void KeepCellsInPlace();
    void ShowUnsaved();
    bool CanSave() const;

    MainCommands &commands_;
    LinkSession &link_;
    StatusWatch watch_;
    QLabel *text_;
    StatusBarCells *cells_;
    UnsavedList *list_;
};

} // namespace ztv

#pragma once

#include "link/LinkSession.h"
#include "model/ClassZentrova.h"
#include "shell/FileCommands.h"
#include "shell/StatusCells.h"

#include <QObject>
#include <QTimer>
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

namespace ztv {

// Gathers the facts for the cells of the status bar and reports each change of them. Its timer runs only
// while a cell shows the age of the values.
class StatusWatch : public QObject {
    Q_OBJECT

public:
    struct Dependencies {
        LinkSession &link;
        ClassZentrova &zentrova;
        const FileCommands &files;
        std::function<QString(std::int16_t)> deviceOfPort;
    };

    // REQUIRES: what it depends on outlives this.
    explicit StatusWatch(Dependencies dependencies);
    ~StatusWatch() override;

    const std::vector<StatusCell> &Cells() const { return cells_; }

    // Call it after what isn't reported by itself: a file command, a change of the port or its device, an
    // added tab.
    void Update();

Q_SIGNALS:
    void FileChangesTurned(); // changes need saving now, or no longer do
    void Changed(const std::vector<StatusCell> &cells);

private:
    void Refresh();
    void TakeSensor();
    StatusFacts Facts() const;
    void StartTimer();

    Dependencies dependencies_;
    bool isOnline_ = false;
    QString device_;
    std::optional<StatusFacts::Sensor> sensor_;
    StatusFacts facts_;
    std::vector<StatusCell> cells_;
    QTimer nextSecond_;
};

} // namespace ztv

#pragma once

#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

namespace ztv {

// Runs the simulated sensor in a separate process: its time doesn't count as ours, and it replies while we
// block.
class SensorProcess {
public:
    // Starts the simulator with these options. Throws std::runtime_error if it doesn't start.
    explicit SensorProcess(const QStringList &options = {});
    ~SensorProcess();
    SensorProcess(const SensorProcess &) = delete;
    SensorProcess &operator=(const SensorProcess &) = delete;

    QString Device() const { return folder_.filePath(QStringLiteral("port")); }

    // Sends a line of the simulator's command language, waits until the command is done, and returns its
    // output.
    QString Command(const QString &line);

private:
    QTemporaryDir folder_;
    QProcess process_;
};

} // namespace ztv

#pragma once

#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

// The simulated sensor in a process of its own: its work isn't taken for ours, and it answers while we block.
class SensorProcess {
public:
    // With these options of its own. Throws std::runtime_error when it doesn't start.
    explicit SensorProcess(const QStringList &options = {});
    ~SensorProcess();
    SensorProcess(const SensorProcess &) = delete;
    SensorProcess &operator=(const SensorProcess &) = delete;

    QString Device() const { return folder_.filePath(QStringLiteral("port")); }

    // Gives a line of its command language; returns what it prints, once the command is done.
    QString Command(const QString &line);

private:
    QTemporaryDir folder_;
    QProcess process_;
};

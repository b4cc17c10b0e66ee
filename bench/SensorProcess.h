#pragma once

#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

// The simulated sensor in a process of its own, so that its work isn't taken for ours.
class SensorProcess {
public:
    // With these options of its own. Throws std::runtime_error when it doesn't start.
    explicit SensorProcess(const QStringList &options = {});
    ~SensorProcess();
    SensorProcess(const SensorProcess &) = delete;
    SensorProcess &operator=(const SensorProcess &) = delete;

    QString Device() const { return folder_.filePath(QStringLiteral("port")); }

private:
    QTemporaryDir folder_;
    QProcess process_;
};

#pragma once

#include <QByteArray>
#include <QStringList>
#include <sys/types.h>

namespace ztv {

// A program in a process of its own, started with as little in the way as can be.
class StartedProgram {
public:
    // Throws std::runtime_error when it doesn't start. It ends with this object.
    StartedProgram(const QString &program, const QStringList &arguments);
    ~StartedProgram();
    StartedProgram(const StartedProgram &) = delete;
    StartedProgram &operator=(const StartedProgram &) = delete;

    // On the clock of Measure::NowMs.
    double StartMs() const { return startMs_; }

    // A line of its standard output. Throws std::runtime_error when none comes.
    QByteArray ReadLine();

    // When it ended by itself, on the same clock. Throws std::runtime_error when it failed.
    double WaitForEnd();

private:
    pid_t id_ = -1;
    int output_ = -1;
    double startMs_ = 0;
    QByteArray buffer_;
};

} // namespace ztv

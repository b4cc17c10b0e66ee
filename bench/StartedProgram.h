#pragma once

#include <QByteArray>
#include <QStringList>
#include <sys/types.h>

namespace ztv {

// A program in a process of its own, started with as little overhead as possible.
class StartedProgram {
public:
    // Starts the program; the destructor ends it. Throws std::runtime_error if it doesn't start.
    StartedProgram(const QString &program, const QStringList &arguments);
    ~StartedProgram();
    StartedProgram(const StartedProgram &) = delete;
    StartedProgram &operator=(const StartedProgram &) = delete;

    // On the clock of Measure::NowMs.
    double StartMs() const { return startMs_; }

    pid_t Id() const { return id_; }

    // Reads a line of its standard output. Throws std::runtime_error if none comes.
    QByteArray ReadLine();

    // Waits until the program ends by itself and returns when, on the same clock. Throws std::runtime_error
    // if it failed.
    double WaitForEnd();

private:
    pid_t id_ = -1;
    int output_ = -1;
    double startMs_ = 0;
    QByteArray buffer_;
};

} // namespace ztv

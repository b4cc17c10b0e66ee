#pragma once

#include "tests/helpers/Wait.h"

#include <QFile>
#include <QProcess>
#include <QProcessEnvironment>
#include <QSocketNotifier>
#include <QStringList>
#include <QTemporaryDir>
#include <array>
#include <csignal>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <memory>
#include <pty.h>
#include <string>
#include <sys/ioctl.h>
#include <unistd.h>

namespace ztv {

// The program as it runs beside a test, which sends it signals and sees how it ends. This turns the event
// loop, in which simulated sensors live.
class StartedCtl {
public:
    StartedCtl() { environment_.insert(QStringLiteral("XDG_CONFIG_HOME"), folder_.path()); }
    ~StartedCtl() {
        process_.kill();
        process_.waitForFinished();
        CloseTerminal();
    }
    StartedCtl(const StartedCtl &) = delete;
    StartedCtl &operator=(const StartedCtl &) = delete;

    void Program(const QString &path) { program_ = path; }
    void Environment(const char *name, const QString &value) {
        environment_.insert(QString::fromLatin1(name), value);
    }

    // Has the next start use a terminal for input and messages, at which someone types that.
    void OnTerminal(const char *typed) {
        CloseTerminal();
        int slave = -1;
        ASSERT_EQ(openpty(&terminal_, &slave, nullptr, nullptr, nullptr), 0);
        ASSERT_GT(write(terminal_, typed, qstrlen(typed)), 0);
        process_.setChildProcessModifier([slave] {
            dup2(slave, STDIN_FILENO);
            dup2(slave, STDERR_FILENO);
        });
        slave_ = slave;
        notifier_ = std::make_unique<QSocketNotifier>(terminal_, QSocketNotifier::Read);
        QObject::connect(notifier_.get(), &QSocketNotifier::activated, [this] { TakeFromTerminal(); });
    }

    // As OnTerminal, for the results, too.
    void AlsoResultsOnTerminal() {
        process_.setChildProcessModifier([slave = slave_] {
            for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
                dup2(slave, stream);
            }
        });
    }

    void Start(const QStringList &words) {
        results_.clear();
        messages_.clear();
        process_.setProcessEnvironment(environment_);
        process_.start(program_, words);
        ASSERT_TRUE(process_.waitForStarted());
        if (slave_ < 0) {
            process_.closeWriteChannel();
        }
    }
    void Signal(int signal) const {
        if (const auto id = static_cast<pid_t>(process_.processId()); id > 0) {
            ::kill(id, signal);
        }
    }

    // Waits until the program handled a signal: the next of its kind isn't merged with it.
    void WaitUntilTaken(int signal) const {
        ASSERT_TRUE(WaitUntil([&] { return (PendingSignals() >> (signal - 1) & 1) == 0; }));
    }
    // Sends a signal again and again until the program ends by it.
    void SignalUntilEnd(int signal) const {
        ASSERT_TRUE(WaitUntil([&] {
            Signal(signal);
            return process_.state() == QProcess::NotRunning;
        }));
    }
    // Has the next start print its results to a pipe that nobody reads.
    void WithoutReader() {
        process_.setChildProcessModifier([] {
            std::array<int, 2> ends{};
            if (pipe(ends.data()) == 0) {
                dup2(ends[1], STDOUT_FILENO);
                close(ends[0]);
                close(ends[1]);
            }
        });
    }

    // Returns the exit status, or minus the number of the signal that ended it.
    int WaitForEnd() {
        EXPECT_TRUE(WaitUntil([this] { return process_.state() == QProcess::NotRunning; }, 60000));
        results_ += process_.readAllStandardOutput().toStdString();
        messages_ += process_.readAllStandardError().toStdString();
        TakeFromTerminal();
        return process_.exitStatus() == QProcess::CrashExit ? -process_.exitCode() : process_.exitCode();
    }
    // Returns all that the program has printed up to now.
    std::string SoFar() {
        results_ += process_.readAllStandardOutput().toStdString();
        return results_ + messages_;
    }
    const std::string &Results() const { return results_; }
    const std::string &Messages() const { return messages_; }

private:
    quint64 PendingSignals() const {
        QFile status(QStringLiteral("/proc/%1/status").arg(process_.processId()));
        const QByteArray text = status.open(QFile::ReadOnly) ? status.readAll() : QByteArray();
        constexpr int hexadecimal = 16;
        const QByteArray name = "ShdPnd:\t";
        return text.mid(text.indexOf(name) + name.size(), hexadecimal).toULongLong(nullptr, hexadecimal);
    }
    void TakeFromTerminal() {
        int waiting = 0;
        while (terminal_ >= 0 && ioctl(terminal_, FIONREAD, &waiting) == 0 && waiting > 0) {
            std::string bytes(static_cast<std::size_t>(waiting), '\0');
            bytes.resize(static_cast<std::size_t>(read(terminal_, bytes.data(), bytes.size())));
            messages_ += bytes;
        }
    }
    void CloseTerminal() {
        notifier_.reset();
        for (int *end : {&slave_, &terminal_}) {
            if (*end >= 0) {
                close(*end);
                *end = -1;
            }
        }
    }

    QTemporaryDir folder_;
    QString program_ = QStringLiteral(ZTV_BIN_DIR "/ztv-ctl");
    QProcessEnvironment environment_ = QProcessEnvironment::systemEnvironment();
    QProcess process_;
    int terminal_ = -1;
    int slave_ = -1;
    std::unique_ptr<QSocketNotifier> notifier_;
    std::string results_;
    std::string messages_;
};

} // namespace ztv

#include "bench/StartedProgram.h"

#include "bench/Measure.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace ztv {

namespace {

constexpr int patienceMs = 90000; // some programs report only after a minute

int WaitFor(pid_t id) {
    int status = 0;
    while (waitpid(id, &status, 0) < 0 && errno == EINTR) {
    }
    return status;
}

} // namespace

StartedProgram::StartedProgram(const QString &program, const QStringList &arguments) {
    std::vector<QByteArray> texts = {program.toLocal8Bit()};
    texts.reserve(arguments.size() + 1);
    for (const QString &argument : arguments) {
        texts.push_back(argument.toLocal8Bit());
    }
    std::vector<char *> words;
    words.reserve(texts.size() + 1);
    for (QByteArray &text : texts) {
        words.push_back(text.data());
    }
    words.push_back(nullptr);

    int ends[2] = {-1, -1};
    if (pipe2(ends, O_CLOEXEC) != 0) {
        throw std::runtime_error("no pipe");
    }
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
    startMs_ = Measure::NowMs();
    const int error = posix_spawn(&id_, words[0], &actions, nullptr, words.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    close(ends[1]);
    output_ = ends[0];
    if (error != 0) {
        close(output_);
        throw std::runtime_error(texts[0].toStdString() + " doesn't start");
    }
}

StartedProgram::~StartedProgram() {
    if (id_ > 0) {
        kill(id_, SIGKILL);
        WaitFor(id_);
    }
    close(output_);
}

double StartedProgram::WaitForEnd() {
    const int status = WaitFor(id_);
    const double endMs = Measure::NowMs();
    id_ = -1;
    if (!WIFEXITED(status) || WEXITSTATUS(status) != EXIT_SUCCESS) {
        throw std::runtime_error("a started program fails");
    }
    return endMs;
}

QByteArray StartedProgram::ReadLine() {
    while (!buffer_.contains('\n')) {
        pollfd wait = {.fd = output_, .events = POLLIN, .revents = 0};
        char bytes[512];
        const ssize_t count = poll(&wait, 1, patienceMs) == 1 ? read(output_, bytes, sizeof bytes) : 0;
        if (count <= 0) {
            throw std::runtime_error("a started program is silent");
        }
        buffer_.append(bytes, count);
    }
    const qsizetype length = buffer_.indexOf('\n');
    QByteArray line = buffer_.left(length);
    buffer_.remove(0, length + 1);
    return line;
}

} // namespace ztv

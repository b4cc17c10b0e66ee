#include "cli/Interruption.h"

#include <QSocketNotifier>
#include <array>
#include <csignal>
#include <cstdint>
#include <sys/socket.h>
#include <time.h>
#include <unistd.h>

namespace ztv {

namespace {

constexpr std::array signals = {SIGINT, SIGTERM, SIGHUP};

// Within this time a signal repeats the first: a terminal that hangs up and "timeout" send theirs twice.
constexpr std::int64_t repeatMs = 1000;

Interruption *present = nullptr;
volatile std::sig_atomic_t taken = 0;
volatile std::int64_t takenAt = 0;
std::array<int, 2> pair = {-1, -1}; // the handler writes to the first, the event loop reads from the second

std::int64_t Milliseconds() {
    constexpr std::int64_t perSecond = 1000;
    constexpr std::int64_t nanoseconds = 1'000'000;
    timespec now = {};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return now.tv_sec * perSecond + now.tv_nsec / nanoseconds;
}

void OnSignal(int signal) {
    if (taken == 0) {
        taken = signal;
        takenAt = Milliseconds();
        const char byte = 0;
        [[maybe_unused]] const ssize_t written = write(pair[0], &byte, 1);
    } else if (Milliseconds() - takenAt >= repeatMs) {
        std::signal(signal, SIG_DFL);
        std::raise(signal); // ends the process when this handler returns
    }
}

void Handle(void (*handler)(int)) {
    struct sigaction action = {};
    action.sa_handler = handler;
    for (const int signal : signals) {
        sigaddset(&action.sa_mask, signal);
    }
    for (const int signal : signals) {
        struct sigaction previous = {};
        sigaction(signal, nullptr, &previous);
        if (previous.sa_handler != SIG_IGN) { // nohup stays
            sigaction(signal, &action, nullptr);
        }
    }
}

} // namespace

Interruption::Interruption() {
    present = this;
    taken = 0;
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, pair.data()) != 0) {
        return; // the signals end the process at once, as they do without this
    }
    auto *notifier = new QSocketNotifier(pair[1], QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, &Interruption::Take);
    Handle(OnSignal);
}

Interruption::~Interruption() {
    Handle(SIG_DFL);
    close(pair[0]);
    close(pair[1]);
    present = nullptr;
    taken = 0;
}

Interruption *Interruption::Present() {
    return present;
}

int Interruption::Signal() {
    return taken;
}

void Interruption::Take() {
    char byte = 0;
    if (read(pair[1], &byte, 1) == 1) {
        Q_EMIT Wanted();
    }
}

} // namespace ztv

#include "cli/Interruption.h"

#include <QSocketNotifier>
#include <array>
#include <csignal>
#include <sys/socket.h>
#include <unistd.h>

namespace ztv {

namespace {

constexpr std::array signals = {SIGINT, SIGTERM, SIGHUP};

Interruption *present = nullptr;
volatile std::sig_atomic_t taken = 0;
std::array<int, 2> pair = {-1, -1}; // the handler writes to the first, the event loop reads from the second

void OnSignal(int signal) {
    taken = signal;
    const char byte = 0;
    [[maybe_unused]] const ssize_t written = write(pair[0], &byte, 1);
}

void Handle(void (*handler)(int), int flags) {
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = flags;
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
    Handle(OnSignal, static_cast<int>(SA_RESETHAND));
}

Interruption::~Interruption() {
    Handle(SIG_DFL, 0);
    close(pair[0]);
    close(pair[1]);
    present = nullptr;
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

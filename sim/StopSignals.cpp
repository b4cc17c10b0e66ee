#include "sim/StopSignals.h"

#include <csignal>
#include <cstdlib>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace sim {
namespace {

int pipeEnds[2] = {-1, -1};

// Only wakes the event loop: a signal handler may do almost nothing.
void Wake(int) {
    const char byte = 0;
    [[maybe_unused]] const ssize_t written = write(pipeEnds[1], &byte, 1);
}

} // namespace

StopSignals::StopSignals(std::function<void()> onStop) {
    if (pipe2(pipeEnds, O_CLOEXEC | O_NONBLOCK) != 0) {
        return;
    }
    notifier_ = std::make_unique<QSocketNotifier>(pipeEnds[0], QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(),
                     [this, onStop = std::move(onStop)] {
                         notifier_->setEnabled(false);
                         onStop();
                     });
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        std::signal(signal, Wake);
    }
    // In the background, a read from the terminal must fail instead of stopping the program.
    std::signal(SIGTTIN, SIG_IGN);
}

} // namespace sim

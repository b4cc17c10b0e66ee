#include "sim/PreciseTimer.h"

#include <algorithm>
#include <cstdint>
#include <ctime>
#include <utility>

#include <sys/timerfd.h>
#include <unistd.h>

namespace sim {
namespace {

constexpr qint64 nsPerSecond = 1'000'000'000;

} // namespace

PreciseTimer::PreciseTimer(std::function<void()> onTimeout)
    : onTimeout_(std::move(onTimeout)),
      descriptor_(timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK | TFD_CLOEXEC)),
      notifier_(std::make_unique<QSocketNotifier>(descriptor_, QSocketNotifier::Read)) {
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(), [this] { Expired(); });
}

PreciseTimer::~PreciseTimer() {
    notifier_.reset();
    close(descriptor_);
}

qint64 PreciseTimer::Now() {
    timespec time{};
    clock_gettime(CLOCK_MONOTONIC, &time);
    return time.tv_sec * nsPerSecond + time.tv_nsec;
}

void PreciseTimer::StartAt(qint64 time) {
    // Zero would stop the timer.
    const qint64 due = std::max<qint64>(time, 1);
    itimerspec setting{};
    setting.it_value.tv_sec = due / nsPerSecond;
    setting.it_value.tv_nsec = due % nsPerSecond;
    timerfd_settime(descriptor_, TFD_TIMER_ABSTIME, &setting, nullptr);
}

void PreciseTimer::Stop() {
    const itimerspec none{};
    timerfd_settime(descriptor_, 0, &none, nullptr);
}

// Calls back unless a later start or stop has cancelled the expiry that the event loop reports.
void PreciseTimer::Expired() {
    std::uint64_t count = 0;
    if (read(descriptor_, &count, sizeof count) == static_cast<ssize_t>(sizeof count)) {
        onTimeout_();
    }
}

} // namespace sim

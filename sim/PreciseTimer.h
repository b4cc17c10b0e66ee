#pragma once

#include <QSocketNotifier>
#include <QtGlobal>

#include <functional>
#include <memory>

namespace sim {

// A timer of the event loop with a resolution below a millisecond, on an absolute clock.
class PreciseTimer {
public:
    explicit PreciseTimer(std::function<void()> onTimeout);
    ~PreciseTimer();
    PreciseTimer(const PreciseTimer &) = delete;
    PreciseTimer &operator=(const PreciseTimer &) = delete;

    // Returns the nanoseconds of a clock that never runs backward.
    static qint64 Now();
    // Calls back once, at that time or as soon after it as possible. Replaces an earlier start.
    void StartAt(qint64 time);
    void Stop();

private:
    void Expired();

    std::function<void()> onTimeout_;
    int descriptor_;
    std::unique_ptr<QSocketNotifier> notifier_;
};

} // namespace sim

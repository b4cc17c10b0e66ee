#pragma once

#include <QSocketNotifier>
#include <QtGlobal>

#include <functional>
#include <memory>

namespace sim {

// A timer of the event loop that keeps fractions of a millisecond, on an absolute clock.
class PreciseTimer {
public:
    explicit PreciseTimer(std::function<void()> onTimeout);
    ~PreciseTimer();
    PreciseTimer(const PreciseTimer &) = delete;
    PreciseTimer &operator=(const PreciseTimer &) = delete;

    // Nanoseconds of a clock that only runs forward.
    static qint64 Now();
    // Calls back once, at that time or as soon after it as can be. Replaces an earlier start.
    void StartAt(qint64 time);
    void Stop();

private:
    void Expired();

    std::function<void()> onTimeout_;
    int descriptor_;
    std::unique_ptr<QSocketNotifier> notifier_;
};

} // namespace sim

#pragma once

#include <QSocketNotifier>

#include <functional>
#include <memory>

namespace sim {

// Converts the signals that end a program into a call from the event loop. At most one per program.
class StopSignals {
public:
    explicit StopSignals(std::function<void()> onStop);

private:
    std::unique_ptr<QSocketNotifier> notifier_;
};

} // namespace sim

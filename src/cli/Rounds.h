#pragma once

#include "cli/CommandRun.h"
#include "cli/PolledSensor.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

namespace ztv {

// Reads the sensors of a command in rounds, as often and as long as its arguments say.
//
// A round starts a period after the start of the one before. A round that is late restarts the grid, so that
// rounds never bunch up.
class Rounds {
public:
    using Handler = std::function<void(const PolledSensor &sensor, const PolledSensor::Reading &reading)>;

    // Throws a Failure (wrong use) for a time that isn't one.
    Rounds(CommandRun &run, const std::vector<std::int16_t> &tags);

    // Calls the handler for each sensor in each round, until the time is over or a signal comes. Sums up
    // then, and returns the status of the first sensor that never gave a good reply. Throws a Failure (no
    // connection) if the port can't be opened.
    ExitStatus Run(const Handler &handler);

private:
    using Clock = std::chrono::steady_clock;

    void RunUntilEnd(SensorLine &line, const Handler &handler);
    void RunRound(SensorLine &line, const Handler &handler);
    bool AwaitNextRound();
    void SleepUntil(Clock::time_point time);
    void ShowProgress();
    ExitStatus SumUp();
    void RemarkCounts();

    CommandRun &run_;
    std::chrono::milliseconds period_{};
    std::chrono::milliseconds usualPeriod_{};
    std::optional<std::chrono::milliseconds> duration_;
    bool showsProgress_;
    std::vector<PolledSensor> sensors_;
    std::int64_t rounds_ = 0;
    Clock::time_point start_;
    Clock::time_point due_;
};

} // namespace ztv

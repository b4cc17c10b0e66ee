#include "setup/LiveReading.h"

#include "support/Numbers.h"

#include <algorithm>
#include <limits>

namespace ztv {

namespace {

using namespace std::chrono_literals;

constexpr auto window = 2s;

// The slowest line is polled every 1.5 s: two polls of it, or six of the fastest one, reach over this time.
constexpr auto leastTimeOfSteady = 1s;

// +-0.1 inch. The echo of a target at rest scatters by some hundredths. This error moves an output that spans
// 100 inches by 0.1 %, and is a fiftieth of the margin that Finish leaves beyond each end.
constexpr std::int32_t greatestSteadySpread = 20;

constexpr double rawPerInch = 100;
constexpr int shownDecimals = 1;

QString MovingBy(std::int32_t spread) {
    return QStringLiteral("moving \u00b1%1\"").arg(FormatDecimals(spread / rawPerInch / 2, shownDecimals));
}

} // namespace

void LiveReading::Become(ValueState state) {
    state_ = state;
    if (state_ != ValueState::Live) {
        samples_.clear();
        hasEcho_ = true;
    }
}

void LiveReading::Take(const Sample &sample) {
    if (state_ != ValueState::Live) {
        return;
    }
    hasEcho_ = sample.hasEcho;
    if (!hasEcho_) {
        samples_.clear();
        return;
    }
    const bool resumes = !samples_.empty() && sample.time - samples_.back().time > window;
    if (resumes) {
        samples_.clear();
    }
    while (!samples_.empty() &&
           (samples_.size() == MostSamples || sample.time - samples_.front().time > window)) {
        samples_.pop_front();
    }
    samples_.push_back(sample);
}

LiveReading::Condition LiveReading::Judge(Clock::time_point now) const {
    if (state_ == ValueState::Held) {
        return Condition::NotRead;
    }
    if (state_ != ValueState::Live) {
        return Condition::NoAnswer;
    }
    if (samples_.empty()) {
        return hasEcho_ ? Condition::Measuring : Condition::NoEcho;
    }
    // On a slow line the table counts as live for longer than this: too long for a distance to be recorded.
    if (now - samples_.back().time > window) {
        return Condition::NoAnswer;
    }
    if (Spread() > greatestSteadySpread) {
        return Condition::Moving;
    }
    return samples_.back().time - samples_.front().time < leastTimeOfSteady ? Condition::Measuring
                                                                            : Condition::Steady;
}

std::int32_t LiveReading::Spread() const {
    if (samples_.empty()) {
        return 0;
    }
    const auto [least, greatest] = std::ranges::minmax_element(samples_, {}, &Sample::raw);
    return greatest->raw - least->raw;
}

QString LiveReading::Words(Clock::time_point now) const {
    switch (Judge(now)) {
    case Condition::NoAnswer:
        return QStringLiteral("no answer");
    case Condition::NotRead:
        return QStringLiteral("not read");
    case Condition::NoEcho:
        return QStringLiteral("no echo");
    case Condition::Measuring:
        return QStringLiteral("measuring");
    case Condition::Moving:
        return MovingBy(Spread());
    case Condition::Steady:
        break;
    }
    return QStringLiteral("steady");
}

LiveReading::Tone LiveReading::ToneOf(Condition condition) {
    switch (condition) {
    case Condition::Steady:
        return Tone::Good;
    case Condition::Measuring:
    case Condition::Moving:
        return Tone::Caution;
    default:
        return Tone::Bad;
    }
}

QString LiveReading::LongestWords() {
    return MovingBy(std::numeric_limits<std::uint16_t>::max());
}

} // namespace ztv

#include "link/ValueWatch.h"

#include <algorithm>
#include <utility>

namespace ztv {

namespace {

constexpr std::chrono::milliseconds leastPatience{1000};
constexpr int patienceInPeriods = 3;

} // namespace

std::chrono::milliseconds ValueWatch::Patience(std::int16_t pollPeriodMs) {
    return std::max(leastPatience, patienceInPeriods * std::chrono::milliseconds(pollPeriodMs));
}

ValueWatch::ValueWatch(QObject *parent) : QObject(parent), patience_(leastPatience) {
    silence_.setSingleShot(true);
    silence_.setTimerType(Qt::PreciseTimer);
    connect(&silence_, &QTimer::timeout, this, [this] { Become(NotLive()); });
}

std::optional<std::chrono::milliseconds> ValueWatch::Age() const {
    if (!lastPoll_) {
        return std::nullopt;
    }
    return std::chrono::duration_cast<std::chrono::milliseconds>(SleepClock::now() - *lastPoll_);
}

void ValueWatch::PollPeriod(std::int16_t milliseconds) {
    patience_ = Patience(milliseconds);
    if (state_ == ValueState::Live) {
        StartTimer();
    }
}

void ValueWatch::Polled() {
    betweenPolls_ = state_ == ValueState::Live ? Age() : std::nullopt;
    lastPoll_ = SleepClock::now();
    StartTimer();
    Become(ValueState::Live);
}

void ValueWatch::Held() {
    Become(ValueState::Held);
}

void ValueWatch::Lost() {
    Become(NotLive());
}

void ValueWatch::Loaded() {
    lastPoll_.reset();
    Become(NotLive());
}

// Counts from the last poll.
void ValueWatch::StartTimer() {
    silence_.start(std::max(patience_ - Age().value_or(patience_), std::chrono::milliseconds(0)));
}

void ValueWatch::Become(ValueState state) {
    if (state != ValueState::Live) {
        silence_.stop();
        betweenPolls_.reset();
    }
    if (std::exchange(state_, state) != state) {
        Q_EMIT Changed(state);
    }
}

} // namespace ztv

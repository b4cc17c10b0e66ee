#pragma once

#include "model/ValueState.h"
#include "support/SleepClock.h"

#include <QObject>
#include <QTimer>
#include <chrono>
#include <cstdint>
#include <optional>

namespace ztv {

// Follows how the values in the parameter table relate to the sensor. Its timer runs only while they are
// live; each poll starts it anew, so that it fires only when polls stay away.
class ValueWatch : public QObject {
    Q_OBJECT

public:
    // Returns how long live values stay live without a poll: a damaged reply or two on a bad line must not
    // make the screen flicker.
    static std::chrono::milliseconds Patience(std::int16_t pollPeriodMs);

    explicit ValueWatch(QObject *parent = nullptr);

    ValueState State() const { return state_; }

    // Returns the time since a poll last filled the table; none if the values are no sensor's.
    std::optional<std::chrono::milliseconds> Age() const;

    // Returns the time between the last two polls; none unless the values are live by both.
    std::optional<std::chrono::milliseconds> TimeBetweenPolls() const { return betweenPolls_; }

    // Sets the period of the polls, which decides how long live values stay live. Applies to the last poll,
    // too.
    void PollPeriod(std::int16_t milliseconds);

    void Polled(); // a poll filled the table
    void Held();   // a poll's values were kept out of the table
    void Lost();   // no poll can come: the port was closed, or its device is gone
    void Loaded(); // a settings file replaces the table's values

Q_SIGNALS:
    void Changed(ValueState state);

private:
    void Become(ValueState state);
    ValueState NotLive() const { return lastPoll_ ? ValueState::Stale : ValueState::NeverRead; }
    void StartTimer();

    ValueState state_ = ValueState::NeverRead;
    std::optional<SleepClock::time_point> lastPoll_;
    std::optional<std::chrono::milliseconds> betweenPolls_;
    std::chrono::milliseconds patience_;
    QTimer silence_;
};

} // namespace ztv

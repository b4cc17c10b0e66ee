#pragma once

#include "model/ValueState.h"
#include "support/SleepClock.h"

#include <QString>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>

namespace ztv {

// Judges whether the live distance can be recorded: it keeps the distances of the last two seconds and says
// whether they are steady, or why there are none.
class LiveReading {
public:
    using Clock = SleepClock;

    enum class Condition {
        NoAnswer,
        NotRead, // the sensor answers, but its values are kept out of the table
        NoEcho,
        Measuring, // too short a time to call it steady
        Moving,
        Steady
    };
    enum class Tone { Good, Caution, Bad };

    // The distance of a poll, in hundredths of an inch.
    struct Sample {
        std::int32_t raw = 0;
        bool hasEcho = false;
        Clock::time_point time;
    };

    // Sets how the table's values relate to the sensor. Forgets the samples unless they are live.
    void Become(ValueState state);

    // Takes the values of a poll, unless the table isn't live. Those without an echo hold an old distance:
    // they end the samples before.
    void Take(const Sample &sample);

    Condition Judge(Clock::time_point now) const;
    bool Answers(Clock::time_point now) const { return Judge(now) != Condition::NoAnswer; }

    // Returns the difference between the greatest and the smallest distance of the samples.
    std::int32_t Spread() const;

    // Returns the word for the condition, with the half of the spread while the distance moves.
    QString Words(Clock::time_point now) const;

    static Tone ToneOf(Condition condition);

    // Returns the longest text of Words, for the room that it needs.
    static QString LongestWords();

    static constexpr std::size_t MostSamples = 32;

private:
    ValueState state_ = ValueState::NeverRead;
    bool hasEcho_ = true; // until a poll says otherwise
    std::deque<Sample> samples_;
};

} // namespace ztv

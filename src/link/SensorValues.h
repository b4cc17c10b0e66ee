#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

namespace ztv {

// The values that the sensor was last known to hold, row by row: those of the last poll and of confirmed
// writes since. Unlike the parameter table, it never has a value that the sensor hasn't reported or
// confirmed.
class SensorValues {
public:
    // The sensor on the line may be another one, or may hold other values, until a poll: a connection begins,
    // polls aren't taken, or a download replaces the values.
    void Outdate() { isCurrent_ = false; }

    // Takes the values of a poll for the rows 1 to `count` - 1.
    void Polled(std::int16_t count, const std::function<std::int32_t(std::int16_t)> &valueOf);

    // Takes a value whose write the sensor has confirmed.
    void Confirmed(std::int16_t tag, std::int32_t value);

    // Returns the row's value; none if no sensor was polled since the program started.
    std::optional<std::int32_t> Value(std::int16_t tag) const;

    // True since a poll: the values are those of the sensor on the line.
    bool IsCurrent() const { return isCurrent_; }
    bool IsKnown() const { return !values_.empty(); }

private:
    std::vector<std::int32_t> values_; // by tag; empty until a poll
    bool isCurrent_ = false;
};

} // namespace ztv

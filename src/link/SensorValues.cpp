#include "link/SensorValues.h"

#include <cstddef>

namespace ztv {

void SensorValues::Polled(std::int16_t count, const std::function<std::int32_t(std::int16_t)> &valueOf) {
    values_.resize(static_cast<std::size_t>(count));
    for (std::int16_t tag = 1; tag < count; ++tag) {
        values_[static_cast<std::size_t>(tag)] = valueOf(tag);
    }
    isCurrent_ = true;
}

void SensorValues::Confirmed(std::int16_t tag, std::int32_t value) {
    const auto row = static_cast<std::size_t>(tag);
    if (isCurrent_ && row < values_.size()) {
        values_[row] = value;
    }
}

std::optional<std::int32_t> SensorValues::Value(std::int16_t tag) const {
    const auto row = static_cast<std::size_t>(tag);
    return row < values_.size() ? std::optional(values_[row]) : std::nullopt;
}

} // namespace ztv

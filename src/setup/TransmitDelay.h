#pragma once

#include "model/ClassZentrova.h"

#include <QString>
#include <cstdint>
#include <optional>

namespace ztv {

// Calculates how long a master unit must wait until all its slaves have transmitted and received and it may
// transmit again. The delay is a 32-bit count of microseconds, split into two 16-bit parameters.
namespace TransmitDelay {

// The results as displayed.
struct Results {
    QString actualDelay; // "3.54 ms"
    QString low;         // the low word of the count; may be outside 0 to 65535
    QString high;        // the high word; negative for a negative count
};

// Calculates the delay from the typed texts: the sum of the slaves' ranges in inches and the sum of the low
// words of their delays. Returns none if one isn't numeric or the total exceeds 32 bits.
std::optional<Results> Calculate(const QString &sumOfRanges, const QString &sumOfDelays);

// Returns the value to write to the parameter for a result; none if the result is empty or doesn't fit 16
// unsigned bits.
std::optional<std::int32_t> RawValue(const ClassZentrova &zentrova, const QString &result, std::int16_t Tag);

} // namespace TransmitDelay

} // namespace ztv

#pragma once

#include "model/ClassZentrova.h"

#include <QString>
#include <cstdint>
#include <optional>

// How long a master unit must wait, so that all its slaves have transmitted and received before it transmits
// again. The delay is a 32-bit count of microseconds, spread over two parameters of 16 bits.
namespace TransmitDelay {

// The texts that the results are shown as.
struct Results {
    QString actualDelay; // "3.54 ms"
    QString low;         // the low word of the count; may be outside 0 to 65535
    QString high;        // the high word; negative for a negative count
};

// From what was typed: the sum of the slaves' ranges in inches and that of their delays' low words. Nothing
// when one isn't numeric, or when the total is beyond 32 bits.
std::optional<Results> Calculate(const QString &sumOfRanges, const QString &sumOfDelays);

// The value to write to the parameter for a result. Nothing when the result is empty or doesn't fit 16 bits
// without a sign.
std::optional<std::int32_t> RawValue(const ClassZentrova &zentrova, const QString &result, std::int16_t Tag);

} // namespace TransmitDelay

#include "setup/TransmitDelay.h"

#include "model/Global.h"
#include "support/Numbers.h"

#include <cmath>
#include <limits>

namespace ztv {

namespace {

constexpr double countsAtFullRange = 62000;
constexpr double fullRangeInches = 420;
constexpr double overheadOfOneCycle = 3536; // counts
constexpr double countsPerMillisecond = 1000;
constexpr std::int32_t countsPerHighWord = 65536;
constexpr std::int32_t highestWord = 65535;
constexpr int decimalsOfMilliseconds = 2;

bool FitsInt32(double value) {
    const double whole = std::nearbyint(value);
    return whole >= std::numeric_limits<std::int32_t>::min() &&
           whole <= std::numeric_limits<std::int32_t>::max();
}

} // namespace

namespace TransmitDelay {

std::optional<Results> Calculate(const QString &sumOfRanges, const QString &sumOfDelays) {
    if (!IsNumeric(sumOfRanges) || !IsNumeric(sumOfDelays)) {
        return std::nullopt;
    }
    const double total = ToNumber(sumOfDelays) + ToNumber(sumOfRanges) * countsAtFullRange / fullRangeInches +
                         overheadOfOneCycle;
    if (!FitsInt32(total)) {
        return std::nullopt;
    }
    const std::int32_t high = ToInt32(total) / countsPerHighWord;
    // The two words are rounded separately: just below a full high word the low word can be negative.
    const double low = total - static_cast<double>(high) * countsPerHighWord;
    return Results{.actualDelay = FormatDecimals(total / countsPerMillisecond, decimalsOfMilliseconds) +
                                  QStringLiteral(" ms"),
                   .low = FormatDecimals(low, 0),
                   .high = FormatDecimals(high, 0)};
}

std::optional<std::int32_t> RawValue(const ClassZentrova &zentrova, const QString &result, std::int16_t Tag) {
    const QString number = Global::StripUnitSuffix(zentrova, result, Tag);
    if (!IsNumeric(number)) {
        return std::nullopt;
    }
    const std::int32_t raw = Global::FormattedToRaw(zentrova, number, Tag);
    return raw >= 0 && raw <= highestWord ? std::optional(raw) : std::nullopt;
}

} // namespace TransmitDelay

} // namespace ztv

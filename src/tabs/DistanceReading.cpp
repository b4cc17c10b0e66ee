#include "tabs/DistanceReading.h"

#include "model/ParamDefines.h"
#include "support/Numbers.h"

namespace ztv {

DistanceReading ReadDistance(const ClassZentrova &zentrova, float barMin, float barMax) {
    const std::int32_t distance = zentrova.ParamValue(ParamDefines::ActualDistance);
    DistanceReading reading{
        .caption = ReformatDecimals(zentrova.FormatRaw(distance, ParamDefines::ActualDistance), 2),
        .barValue = {}};
    if (barMin <= static_cast<float>(distance) && barMax >= static_cast<float>(distance)) {
        reading.barValue = distance;
    }
    return reading;
}

} // namespace ztv

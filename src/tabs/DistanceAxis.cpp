#include "tabs/DistanceAxis.h"

#include "model/Global.h"
#include "model/ParamDefines.h"

namespace DistanceAxis {

float PositionOf(std::int32_t distance, const ClassZentrova &zentrova, const Spans &spans) {
    const auto position = [distance](std::int32_t first, std::int32_t last, const Span &span) {
        return static_cast<float>(Global::InterpolateClipped(distance, first, last, span.from, span.to));
    };
    const std::int32_t nearest = zentrova.ParamValue(ParamDefines::NearDistance);
    const std::int32_t farthest = zentrova.ParamValue(ParamDefines::FarDistance);
    if (distance < nearest) {
        return position(zentrova.ParamValue(ParamDefines::MinRange), nearest, spans.minToNear);
    }
    if (distance > farthest) {
        return position(farthest, zentrova.ParamValue(ParamDefines::MaxRange), spans.farToMax);
    }
    return position(nearest, farthest, spans.nearToFar);
}

} // namespace DistanceAxis

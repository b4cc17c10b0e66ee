#include "chart/DistanceAxis.h"

#include "model/Global.h"
#include "model/ParamDefines.h"

namespace ztv {

namespace DistanceAxis {

Spans OfMarkers(const BasicDrawing &drawing) {
    const Drawing::Line &slope = drawing.At(Drawing::LineId::LineLinearSlope);
    const Drawing::Line &plateau = drawing.At(Drawing::LineId::Line10V);
    return {
        .minToNear = {0, slope.x1}, .nearToFar = {slope.x1, slope.x2}, .farToMax = {plateau.x1, plateau.x2}};
}

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

} // namespace ztv

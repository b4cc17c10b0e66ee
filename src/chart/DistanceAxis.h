#pragma once

#include "chart/BasicDrawing.h"
#include "model/ClassZentrova.h"

#include <cstdint>

namespace ztv {

// The chart's horizontal axis: three spans between Min Range, Near Distance, Far Distance and Max Range, each
// with its own scale.
namespace DistanceAxis {

struct Span {
    float from;
    float to;
};

// The horizontal positions of the three spans, in twips.
struct Spans {
    Span minToNear;
    Span nearToFar;
    Span farToMax;
};

// Returns the spans of the relay markers in `drawing`.
Spans OfMarkers(const BasicDrawing &drawing);

// Returns the position of a distance. Near and Far Distance themselves belong to the middle span.
float PositionOf(std::int32_t distance, const ClassZentrova &zentrova, const Spans &spans);

} // namespace DistanceAxis

} // namespace ztv

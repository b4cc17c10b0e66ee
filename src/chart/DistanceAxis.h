#pragma once

#include "chart/BasicDrawing.h"
#include "model/ClassZentrova.h"

#include <cstdint>

// The chart's horizontal axis: Min Range, Near Distance, Far Distance and Max Range, with a scale of its own
// between each two.
namespace DistanceAxis {

struct Span {
    float from;
    float to;
};

// Where the three spans stand, in twips.
struct Spans {
    Span minToNear;
    Span nearToFar;
    Span farToMax;
};

// Where the relay markers' spans stand in the drawing.
Spans OfMarkers(const BasicDrawing &drawing);

// The place of a distance; Near and Far Distance themselves belong to the middle span.
float PositionOf(std::int32_t distance, const ClassZentrova &zentrova, const Spans &spans);

} // namespace DistanceAxis

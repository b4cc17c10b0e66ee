#pragma once

#include "chart/DrawingElements.h"
#include "model/ClassZentrova.h"

#include <array>

namespace ztv {

// The output voltage from the empty core to the full roll: it falls as core / diameter.
namespace HyperbolicCurve {

// Returns the curve from the start of `coreRail` towards `rollRail`, with a flat tail to the chart's left
// edge. The curve isn't scaled to the voltages. Throws a Fault (division by zero) for a roll without a
// diameter.
std::array<Drawing::Point, 100> Points(const ClassZentrova &zentrova, const Drawing::Line &coreRail,
                                       const Drawing::Line &rollRail);

} // namespace HyperbolicCurve

} // namespace ztv

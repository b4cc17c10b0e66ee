#pragma once

#include "model/ClassZentrova.h"
#include "tabs/DrawingElements.h"

#include <array>
#include <cstdint>

// The output over a roll, from the empty core to the full roll: it falls as core / diameter.
namespace HyperbolicCurve {

// The near distance that the diameters leave: that of the full roll.
std::int32_t NearDistance(const ClassZentrova &zentrova);

// False for a roll without a diameter.
bool Exists(const ClassZentrova &zentrova);

// The curve from the start of `coreRail` towards `rollRail`, with a flat tail to the chart's left edge. Its
// voltage isn't scaled. Fault (division by zero) where it doesn't exist.
std::array<Drawing::Point, 100> Points(const ClassZentrova &zentrova, const Drawing::Line &coreRail,
                                       const Drawing::Line &rollRail);

} // namespace HyperbolicCurve

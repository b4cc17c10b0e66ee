#pragma once

#include "chart/BasicDrawing.h"
#include "model/ClassZentrova.h"

namespace ztv {

// Marks each relay threshold that lies outside Min Range to Max Range, where the sensor measures nothing. The
// chart shows such a threshold at its edge, so the mark's tool tip gives the reason. A mark has the number of
// the relay, which the edge would cut off; a threshold at the edge itself has the number alone.
namespace ThresholdMarks {

// Shows the marks for the table's present values and the markers' present places. A marker that the user
// holds has none. REQUIRES: the markers are at their places.
void Follow(const ClassZentrova &zentrova, BasicDrawing &drawing);

} // namespace ThresholdMarks

} // namespace ztv

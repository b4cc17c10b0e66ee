#pragma once

#include "chart/BasicDrawing.h"
#include "model/ClassZentrova.h"

#include <QString>
#include <cstdint>

namespace ztv {

// Shows in the chart, in words and by lamps, the sensor's measured states: each relay, the strength of the
// echo, the roll's diameter. Their places are BasicGraph's.
namespace SensorSigns {

// Shows the table's present values. While the measured values aren't live they stay, and the lamps' tool tips
// say so.
void Follow(const ClassZentrova &zentrova, BasicDrawing &drawing);

// The texts of two readings; that of the echo has two lines.
QString EchoText(std::int32_t strength);
QString DiameterText(const ClassZentrova &zentrova, std::int32_t diameter);

} // namespace SensorSigns

} // namespace ztv

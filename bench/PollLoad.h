#pragma once

#include "bench/Figures.h"

namespace ztv {

// Measures what the poll and the display of its values cost, tab by tab and as a load over time.
void MeasurePollLoad(Figures &figures);

} // namespace ztv

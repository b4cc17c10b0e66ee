#pragma once

#include "bench/Figures.h"

namespace ztv {

// Measures the time from a request to its registers, for the program's master and for others on the same
// slave.
void MeasureRoundTrips(Figures &figures);

} // namespace ztv

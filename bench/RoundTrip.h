#pragma once

#include "bench/Figures.h"

namespace ztv {

// The time from a request to its registers, ours and that of other masters on the same slave.
void MeasureRoundTrips(Figures &figures);

} // namespace ztv

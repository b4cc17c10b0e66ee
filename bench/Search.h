#pragma once

#include "bench/Figures.h"

namespace ztv {

// What a search of a silent line takes beside the line times and timeouts that it can't do without.
void MeasureSearch(Figures &figures);

} // namespace ztv

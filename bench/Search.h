#pragma once

#include "bench/Figures.h"

namespace ztv {

// Measures a search of a silent line as a multiple of its unavoidable line times and timeouts.
void MeasureSearch(Figures &figures);

} // namespace ztv

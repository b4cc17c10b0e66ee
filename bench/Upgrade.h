#pragma once

#include "bench/Figures.h"

namespace ztv {

// Measures an upgrade of the whole application through the console, beside the time that its bytes take on
// the line.
void MeasureUpgrade(Figures &figures);

} // namespace ztv

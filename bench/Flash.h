#pragma once

#include "bench/Figures.h"

namespace ztv {

// Measures an upgrade of the whole application by the command line, beside the time that its bytes take on
// the line.
void MeasureFlash(Figures &figures);

} // namespace ztv

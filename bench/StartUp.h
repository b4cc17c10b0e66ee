#pragma once

#include "bench/Figures.h"

namespace ztv {

// Measures the time from the program's start to its painted window, and its memory then.
void MeasureStartUp(Figures &figures);

} // namespace ztv

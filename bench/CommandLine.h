#pragma once

#include "bench/Figures.h"

namespace ztv {

// Measures ztv-ctl: the start to the first value beside mbpoll, the rounds of a watch, and the memory.
void MeasureCommandLine(Figures &figures);

} // namespace ztv

#pragma once

#include "bench/Figures.h"

namespace ztv {

// From the start of the program to its painted window, and the memory that it then holds.
void MeasureStartUp(Figures &figures);

} // namespace ztv

#pragma once

#include "bench/Figures.h"

namespace ztv {

// Measures a refresh of the Advanced list.
void MeasureListRefresh(Figures &figures);

} // namespace ztv

#pragma once

#include "bench/Figures.h"

namespace ztv {

// What a refresh of the Advanced list takes.
void MeasureListRefresh(Figures &figures);

} // namespace ztv

#pragma once

#include "bench/Figures.h"

// What the poll and the display of its values cost, tab by tab and as a load over time.
void MeasurePollLoad(Figures &figures);

#pragma once

#include "bench/Figures.h"

// What a refresh of the Advanced list takes.
void MeasureListRefresh(Figures &figures);

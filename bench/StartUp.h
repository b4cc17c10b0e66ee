#pragma once

#include "bench/Figures.h"

// From the start of the program to its painted window, and the memory that it then holds.
void MeasureStartUp(Figures &figures);

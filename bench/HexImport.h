#pragma once

#include "bench/Figures.h"

namespace ztv {

// Measures the check and the import of a hex file, beside other programs' conversion of the same file.
void MeasureHexImport(Figures &figures);

} // namespace ztv

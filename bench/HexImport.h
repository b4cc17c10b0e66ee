#pragma once

#include "bench/Figures.h"

namespace ztv {

// What the import of a hex file takes, check and all, beside other programs' whole conversion of the same
// file.
void MeasureHexImport(Figures &figures);

} // namespace ztv

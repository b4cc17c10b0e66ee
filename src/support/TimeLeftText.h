#pragma once

#include <QString>

namespace ztv {

// Returns the remaining time in words: seconds, rounded up, with minutes where there are some.
QString TimeLeftText(double milliseconds);

} // namespace ztv

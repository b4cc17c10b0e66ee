#pragma once

#include <QString>
#include <QtGlobal>

namespace ztv {

// Returns the time left, in words, of a transfer that has run for `elapsedMs` and done that fraction (0 to 1)
// of the whole. Empty while it can't be estimated.
QString TimeLeft(qint64 elapsedMs, double done);

} // namespace ztv

#pragma once

#include <QIcon>

namespace ztv {

// Returns the icon with an amber dot at its upper right, drawn at the size that is asked for.
QIcon MarkedIcon(const QIcon &icon);

} // namespace ztv

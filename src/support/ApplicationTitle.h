#pragma once

#include <QString>

namespace ztv {

// The title of the program: shown on its windows and boxes, and the key of its settings.
inline QString ApplicationTitle() {
    return QStringLiteral("ZTV Link");
}

} // namespace ztv

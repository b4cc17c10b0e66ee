#pragma once

#include <QString>

// The title of the program: shown on its windows and boxes, and the key of its settings.
inline QString ApplicationTitle() {
    return QStringLiteral("ZTV Link");
}

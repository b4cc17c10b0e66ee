#pragma once

#include <QString>

// The title of the program: on its windows and boxes, and the address of its settings.
inline QString ApplicationTitle() {
    return QStringLiteral("ZTV Link");
}

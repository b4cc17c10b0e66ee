#pragma once

#include "model/ClassZentrova.h"

#include <QString>
#include <cstdint>

namespace ztv {

// Returns the number of the parameter that a text names: by number, by name, or by the beginning of a name
// that no other name begins with. Letters' case doesn't matter. Throws a Failure (wrong use) that names the
// candidates, or the name that was probably meant.
std::int16_t TagOf(const QString &text, const ClassZentrova &zentrova);

} // namespace ztv

#pragma once

#include "model/ClassZentrova.h"

#include <cstdint>

namespace ztv {

// The arithmetic of a roll, from the empty core to the full diameter.
namespace RollGeometry {

// Returns the near distance that follows from the diameters: that of the full roll.
std::int32_t NearDistance(const ClassZentrova &zentrova);

// Returns false for a roll whose diameters are both 0.
bool Exists(const ClassZentrova &zentrova);

// Returns how far the output has dropped at a diameter: 0 at the core, 1 at an infinite diameter. Fault
// (division by zero) for diameter 0.
float OutputDrop(float core, float diameter);

} // namespace RollGeometry

} // namespace ztv

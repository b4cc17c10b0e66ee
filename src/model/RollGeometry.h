#pragma once

#include "model/ClassZentrova.h"

#include <cstdint>

// The arithmetic of a roll, from the empty core to the full diameter.
namespace RollGeometry {

// The near distance that the diameters leave: that of the full roll.
std::int32_t NearDistance(const ClassZentrova &zentrova);

// False for a roll without a diameter.
bool Exists(const ClassZentrova &zentrova);

// How far the output has dropped at a diameter: 0 at the core, 1 at an endless one. Fault (division by zero)
// for a roll without a diameter.
float OutputDrop(float core, float diameter);

} // namespace RollGeometry

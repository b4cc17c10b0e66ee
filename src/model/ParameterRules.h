#pragma once

#include "model/ClassZentrova.h"

#include <QString>
#include <cstdint>

// The relations that parameters must keep to each other.
namespace ParameterRules {

// Returns why a new raw value doesn't fit with the distances and diameters beside it, as the user reads it;
// empty when it fits. Any parameter but these fits.
QString Conflict(const ClassZentrova &zentrova, std::int16_t tag, std::int64_t raw);

} // namespace ParameterRules

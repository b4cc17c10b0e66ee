#pragma once

#include "model/ClassZentrova.h"

#include <QString>
#include <cstdint>

namespace ztv {

// The relations that must hold between parameters.
namespace ParameterRules {

// Returns why a new raw value conflicts with the other distances and diameters, in words for the user; empty
// when it doesn't. Other parameters never conflict.
QString Conflict(const ClassZentrova &zentrova, std::int16_t tag, std::int64_t raw);

} // namespace ParameterRules

} // namespace ztv

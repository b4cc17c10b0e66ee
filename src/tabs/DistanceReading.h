#pragma once

#include "model/ClassZentrova.h"

#include <QString>
#include <cstdint>
#include <optional>

namespace ztv {

// The measured distance as the Distance tab shows it.
struct DistanceReading {
    QString caption;
    std::optional<std::int32_t> barValue; // none outside the bar's range: the bar keeps its last value
};

DistanceReading ReadDistance(const ClassZentrova &zentrova, float barMin, float barMax);

} // namespace ztv

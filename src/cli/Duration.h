#pragma once

#include <QString>
#include <chrono>

namespace ztv {

// Returns the time that a text names: "90" and "90s", "10m", "8h", "7d". Throws a Failure (wrong use) for any
// other text, and for a time of 0 or of more than ten years.
std::chrono::milliseconds DurationOf(const QString &text);

} // namespace ztv

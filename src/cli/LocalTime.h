#pragma once

#include <QString>
#include <chrono>

namespace ztv {

// Returns the local time with milliseconds and the offset from UTC: 2026-11-22T16:07:05.123+01:00.
QString IsoTime(std::chrono::system_clock::time_point time);

// Returns the local time of day with milliseconds: 16:07:05.123.
QString TimeOfDay(std::chrono::system_clock::time_point time);

} // namespace ztv

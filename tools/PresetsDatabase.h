#pragma once

#include "tools/SensorTable.h"

#include <filesystem>

namespace ztv {

// Writes the table to a presets database. An old file stays in place until the new one is complete.
// std::runtime_error when it can't be written.
void WritePresetsDatabase(const std::filesystem::path &output, const SensorTable &table);

} // namespace ztv

#pragma once

#include "tools/SensorTable.h"

#include <filesystem>
#include <string>
#include <vector>

namespace ztv {

// Returns one message, naming file and line, for each condition of a conditions.txt that a table breaks or
// that can't be read, for each role that the table lacks, and for each role of the table that no condition
// names. The file describes its own language.
std::vector<std::string> BrokenConditions(const SensorTable &table, const std::filesystem::path &conditions);

} // namespace ztv

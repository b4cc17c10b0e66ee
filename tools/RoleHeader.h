#pragma once

#include "tools/SensorTable.h"

#include <filesystem>
#include <string>
#include <string_view>

namespace ztv {

// Returns a C++ header with a constant for each role and for each named value, in a namespace such as
// "ztv::ParamDefines".
std::string RoleHeader(const SensorTable &table, std::string_view nameSpace);

// Writes a text to a file, whose folder it makes. Leaves a file alone that holds the text already, so that
// those who include it needn't be built again. std::runtime_error when it can't be written.
void WriteIfChanged(const std::filesystem::path &path, const std::string &text);

} // namespace ztv

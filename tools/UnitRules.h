#pragma once

#include "tools/SensorTable.h"

#include <string>
#include <vector>

namespace ztv {

// Returns one message for each rule that a row of units.txt breaks. The rules follow from the way in which
// the program shows a value of each unit code.
std::vector<std::string> BrokenUnitRules(const SensorTable &table);

} // namespace ztv

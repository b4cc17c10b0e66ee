#pragma once

#include "link/CommSettings.h"

#include <QString>
#include <chrono>

namespace ztv {

// Facts of the link in the words of the main form.
namespace LinkWords {

// Returns such as "12 s", "1 min 15 s", "2 h 3 min".
QString Duration(std::chrono::seconds time);

// Returns such as "38400 N2"; "?" for an index that has no text.
QString LineSetting(const CommSettings &comm);

} // namespace LinkWords

} // namespace ztv

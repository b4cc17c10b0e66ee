#pragma once

#include <QString>
#include <cstdint>

namespace ztv {

// Returns upper-case hexadecimal digits, padded with "0" on the left to `width`. Deliberate: of a value with
// more digits, returns `width` digits that start one place to the left of the low ones; no caller passes one.
QString HexDigits(std::int32_t value, int width);

} // namespace ztv

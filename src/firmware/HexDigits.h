#pragma once

#include <QString>
#include <cstdint>

// Upper-case hexadecimal digits, padded with "0" on the left to `width`. A value with more digits gives
// `width` of them from one place to the left of its low ones, as it always has; no caller passes one.
QString HexDigits(std::int32_t value, int width);

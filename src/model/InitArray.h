#pragma once

#include <QString>
#include <cstdint>
#include <initializer_list>
#include <vector>

namespace ztv {

// Fills constant tables: each helper copies a list of values into an array with the bounds of the source.
namespace InitArray {

std::vector<QString> Texts(std::initializer_list<const char *> values);
std::vector<std::int16_t> Integers(std::initializer_list<std::int16_t> values);

} // namespace InitArray

} // namespace ztv

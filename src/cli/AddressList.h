#pragma once

#include <QString>
#include <cstdint>
#include <vector>

namespace ztv {

// Returns the sensors' addresses that a text names, in its order and each once: "17", "1,5,9", "1-10",
// "1-3,12". Throws a Failure (wrong use) for any other text.
std::vector<std::int16_t> AddressesOf(const QString &text);

} // namespace ztv

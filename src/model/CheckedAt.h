#pragma once

#include "support/Fault.h"

#include <cstddef>
#include <cstdint>
#include <utility>

namespace ztv {

// Returns element `index` of an array, or throws a subscript fault that names the array and the index.
template <typename Array>
auto &CheckedAt(Array &array, std::int64_t index, const char *name) {
    if (!std::in_range<std::size_t>(index) || static_cast<std::size_t>(index) >= array.size()) {
        throw Fault::Subscript(
            QStringLiteral("%1(%2), with %3 elements").arg(QLatin1String(name)).arg(index).arg(array.size()));
    }
    return array[static_cast<std::size_t>(index)];
}

} // namespace ztv

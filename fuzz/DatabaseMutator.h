#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace ztv {

// A column whose values the mutator changes.
struct TableColumn {
    const char *table;
    const char *column;
};

// Changes a database through the format: values, records and tables. Random changes of bytes seldom leave a
// database. Returns false if the bytes are no database or the result is too large.
bool MutateDatabase(std::uint8_t *data, std::size_t &size, std::size_t most, unsigned seed,
                    std::span<const TableColumn> columns);

} // namespace ztv

#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace ztv {

// A value in a record of a table, or a change to what the table is.
struct TableColumn {
    const char *table;
    const char *column;
};

// Bytes changed by chance seldom are a database any more. This changes one as a program does that knows the
// format: values, records and tables. False: these bytes can't be changed so, or the result is too large.
bool MutateDatabase(std::uint8_t *data, std::size_t &size, std::size_t most, unsigned seed,
                    std::span<const TableColumn> columns);

} // namespace ztv

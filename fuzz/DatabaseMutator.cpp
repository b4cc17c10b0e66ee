#include "fuzz/DatabaseMutator.h"

#include <cstring>
#include <memory>
#include <random>
#include <sqlite3.h>
#include <string>

namespace ztv {

namespace {

using Numbers = std::minstd_rand;

const char *OneOf(std::span<const char *const> choices, Numbers &numbers) {
    return choices[numbers() % choices.size()];
}

const char *Value(Numbers &numbers) {
    static constexpr const char *values[] = {"NULL",
                                             "0",
                                             "1",
                                             "-1",
                                             "2",
                                             "13",
                                             "95",
                                             "96",
                                             "97",
                                             "32767",
                                             "32768",
                                             "65535",
                                             "-32768",
                                             "2147483647",
                                             "2147483648",
                                             "-2147483648",
                                             "-2147483649",
                                             "9223372036854775807",
                                             "-9223372036854775808",
                                             "1.0",
                                             "1.5",
                                             "1e300",
                                             "''",
                                             "'96'",
                                             "x'3936'",
                                             "x'00FF'",
                                             "char(0)",
                                             "'a'||char(0)||'b'",
                                             "char(65279)||'x'",
                                             "char(65279,65279)",
                                             "char(55357)",
                                             "x'C328'",
                                             "CAST(x'FFFE41' AS TEXT)",
                                             "hex(zeroblob(2000))",
                                             "zeroblob(5000)",
                                             "hex(zeroblob(2049))",
                                             "rowid",
                                             "-rowid",
                                             "abs(random()) % 70000"};
    return OneOf(values, numbers);
}

std::string Statement(Numbers &numbers, std::span<const TableColumn> columns) {
    const TableColumn &place = columns[numbers() % columns.size()];
    const std::string table = place.table;
    const std::string column = place.column;
    const std::string record = std::to_string(numbers() % 20);
    const std::string value = Value(numbers);
    switch (numbers() % 16) {
    case 0:
        return "UPDATE " + table + " SET " + column + " = " + value;
    case 1:
        return "DELETE FROM " + table + " WHERE rowid % " + record + " = 3";
    case 2:
        return "INSERT INTO " + table + " SELECT * FROM " + table + " LIMIT " + record;
    case 3:
        return "INSERT INTO " + table + "(rowid, " + column + ") VALUES (" + value + ", " + Value(numbers) +
               ")";
    case 4:
        return "ALTER TABLE " + table + " RENAME COLUMN " + column + " TO rowid";
    case 5:
        return "ALTER TABLE " + table + " RENAME TO Other";
    case 6:
        return "ALTER TABLE " + table + " ADD COLUMN g AS (" + column + " || " + value + ")";
    case 7:
        return "CREATE VIEW Other AS SELECT * FROM " + table + "; ALTER TABLE " + table +
               " RENAME TO Hidden; CREATE VIEW " + table + " AS SELECT * FROM Hidden";
    case 8:
        return "CREATE INDEX i" + record + " ON " + table + "(" + column + ")";
    case 9:
        return "CREATE TRIGGER t AFTER UPDATE ON " + table + " BEGIN SELECT 1; END";
    default:
        return "UPDATE " + table + " SET " + column + " = " + value +
               " WHERE rowid = " + (numbers() % 3 == 0 ? std::string("13") : record);
    }
}

int Stop(void *) {
    return 1;
}

} // namespace

bool MutateDatabase(std::uint8_t *data, std::size_t &size, std::size_t most, unsigned seed,
                    std::span<const TableColumn> columns) {
    Numbers numbers(seed);
    sqlite3 *handle = nullptr;
    sqlite3_open(":memory:", &handle);
    const std::unique_ptr<sqlite3, decltype(&sqlite3_close)> database(handle, sqlite3_close);
    auto *copy = static_cast<unsigned char *>(sqlite3_malloc64(size + 1));
    if (copy == nullptr) {
        return false;
    }
    std::memcpy(copy, data, size);
    const auto bytes = static_cast<sqlite3_int64>(size);
    if (sqlite3_deserialize(handle, "main", copy, bytes, bytes,
                            SQLITE_DESERIALIZE_FREEONCLOSE | SQLITE_DESERIALIZE_RESIZEABLE) != SQLITE_OK) {
        return false;
    }
    sqlite3_progress_handler(handle, 200000, Stop, nullptr);
    sqlite3_limit(handle, SQLITE_LIMIT_LENGTH, 1 << 17);
    const std::string statement = Statement(numbers, columns);
    if (sqlite3_exec(handle, statement.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) {
        return false;
    }
    sqlite3_int64 newSize = 0;
    const std::unique_ptr<unsigned char, decltype(&sqlite3_free)> changed(
        sqlite3_serialize(handle, "main", &newSize, 0), sqlite3_free);
    if (changed == nullptr || newSize <= 0 || static_cast<std::size_t>(newSize) > most) {
        return false;
    }
    size = static_cast<std::size_t>(newSize);
    std::memcpy(data, changed.get(), size);
    return true;
}

} // namespace ztv

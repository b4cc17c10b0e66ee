#include "tools/PresetsDatabase.h"

#include <SQLiteCpp/SQLiteCpp.h>
#include <SQLiteCpp/VariadicBind.h>

#include <exception>
#include <stdexcept>
#include <string>
#include <system_error>

namespace ztv {

namespace {

namespace fs = std::filesystem;

constexpr std::int32_t applicationId = 0x5A545650; // "ZTVP"
constexpr std::int32_t schemaVersion = 1;

// Keeps the journal in memory, because the file is put in place only when it is complete.
void FillDatabase(const fs::path &path, const SensorTable &table) {
    SQLite::Database db(path.string(), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
    db.exec("PRAGMA journal_mode = MEMORY");
    db.exec("PRAGMA page_size = 4096");
    db.exec("PRAGMA application_id = " + std::to_string(applicationId));
    db.exec("PRAGMA user_version = " + std::to_string(schemaVersion));

    SQLite::Transaction transaction(db);
    db.exec(
        "CREATE TABLE Parameters (\"Min\" INTEGER, \"Max\" INTEGER, \"Preset\" INTEGER, \"Value\" INTEGER,"
        " \"ReadOnly\" INTEGER, \"Signed\" INTEGER, \"Name\" TEXT, \"Units\" INTEGER, \"DecimalPlaces\" "
        "INTEGER)");
    db.exec(
        "CREATE TABLE Units (\"UnitText0\" TEXT, \"UnitText1\" TEXT, \"UnitText2\" TEXT, \"UnitText3\" TEXT,"
        " \"UnitText4\" TEXT)");

    SQLite::Statement addParameter(db, "INSERT INTO Parameters VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?)");
    for (const Parameter &p : table.Parameters()) {
        SQLite::bind(addParameter, p.min, p.max, p.preset, p.value, p.readOnly ? -1 : 0, p.isSigned ? -1 : 0,
                     p.name, p.unit, p.decimals);
        addParameter.exec();
        addParameter.reset();
    }

    SQLite::Statement addUnit(db, "INSERT INTO Units VALUES (?, ?, ?, ?, ?)");
    for (const Unit &u : table.Units()) {
        for (std::size_t column = 0; column < u.texts.size(); ++column) {
            const int index = static_cast<int>(column) + 1;
            if (u.texts[column].empty()) {
                addUnit.bind(index);
            } else {
                addUnit.bind(index, u.texts[column]);
            }
        }
        addUnit.exec();
        addUnit.reset();
    }
    transaction.commit();
}

} // namespace

void WritePresetsDatabase(const fs::path &output, const SensorTable &table) {
    fs::path unfinished = output;
    unfinished += ".new";
    fs::remove(unfinished);
    try {
        FillDatabase(unfinished, table);
        fs::rename(unfinished, output);
    } catch (const std::exception &fault) {
        std::error_code ignored;
        fs::remove(unfinished, ignored);
        throw std::runtime_error(output.string() + ": " + fault.what());
    }
}

} // namespace ztv

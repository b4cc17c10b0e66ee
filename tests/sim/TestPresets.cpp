#include "tests/sim/TestPresets.h"

#include <SQLiteCpp/SQLiteCpp.h>

#include <map>

namespace sim {

namespace test {
namespace {

struct Row {
    int min = 0;
    int max = 65535;
    int preset = 0;
    bool readOnly = false;
    bool isSigned = false;
};

std::map<int, Row> SpecialRows() {
    std::map<int, Row> rows{
        {1, {0, 1, 0}},
        {3, {0, 99, 0}},
        {8, {0, 65535, 214, true}},
        {9, {0, 65535, 117, true}},
        {12, {0, 65535, TestPresets::count, true}},
        {24, {600, 42000, 600}},
        {25, {600, 42000, 42000}},
        {28, {600, 42000, 2000}},
        {29, {600, 42000, 10000}},
        {32, {0, 65535, 600, true}},
        {33, {0, 42000, 400}},
        {34, {0, 42000, 4000}},
        {36, {0, 1000, 0}},
        {37, {0, 1000, 1000}},
        {39, {0, 2, 1}},
        {40, {0, 4095, 0}},
        {56, {0, 42000, 5000}},
        {57, {0, 42000, 9000}},
        {58, {0, 42000, 6000}},
        {59, {0, 42000, 8000}},
        {65, {1, 247, 1}},
        {66, {0, 4, 4}},
        {67, {0, 3, 1}},
        {68, {0, 1, 1, true}},
        {69, {0, 65535, TestPresets::marker, true}},
        {81, {-500, 500, -7, false, true}},
    };
    for (const int number : {18, 19, 38, 46, 48, 60, 61}) {
        rows[number] = {0, 1000, 0, true};
    }
    return rows;
}

} // namespace

TestPresets::TestPresets() {
    SQLite::Database database(Path().toStdString(), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
    SQLite::Transaction transaction(database);
    database.exec("CREATE TABLE Parameters (Min INTEGER, Max INTEGER, Preset INTEGER, Value INTEGER,"
                  " ReadOnly INTEGER, Signed INTEGER, Name TEXT, Units INTEGER, DecimalPlaces INTEGER)");
    SQLite::Statement insert(database, "INSERT INTO Parameters VALUES (?, ?, ?, ?, ?, ?, 'name', 0, 0)");
    std::map<int, Row> rows = SpecialRows();
    for (int i = 0; i < count; ++i) {
        const Row row = rows[i];
        insert.bind(1, row.min);
        insert.bind(2, row.max);
        insert.bind(3, row.preset);
        insert.bind(4, row.preset);
        insert.bind(5, row.readOnly ? 1 : 0);
        insert.bind(6, row.isSigned ? 1 : 0);
        insert.exec();
        insert.reset();
    }
    transaction.commit();
}

QString TestPresets::Path() const {
    return folder_.filePath(QStringLiteral("Presets.fil"));
}

void TestPresets::Change(const char *sql) const {
    SQLite::Database database(Path().toStdString(), SQLite::OPEN_READWRITE);
    database.exec(sql);
}

} // namespace test

} // namespace sim

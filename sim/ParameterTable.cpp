#include "sim/ParameterTable.h"

#include "sim/Parameters.h"

#include <SQLiteCpp/SQLiteCpp.h>

#include <QFileInfo>

#include <exception>

namespace sim {
namespace {

constexpr int countRow = parameter::ParameterCount;
constexpr int fewestRows = parameter::LastRawOutput + 1; // the last row that code knows
constexpr int mostRows = 1000;

} // namespace

QString ParameterTable::Load(const QString &fileName) {
    if (!QFileInfo(fileName).isFile()) {
        return QStringLiteral("the presets database %1 does not exist").arg(fileName);
    }
    try {
        SQLite::Database database(fileName.toStdString(), SQLite::OPEN_READONLY);
        // The file may come from an untrusted source.
        database.exec("PRAGMA trusted_schema = OFF");
        const int tables = database.execAndGet(
            "SELECT count(*) FROM sqlite_master WHERE type = 'table' AND name = 'Parameters'");
        if (tables != 1) {
            return QStringLiteral("%1 has no table Parameters").arg(fileName);
        }

        std::vector<ParameterRow> rows;
        SQLite::Statement query(
            database,
            "SELECT Min, Max, Preset, Value, ReadOnly, Signed FROM Parameters ORDER BY rowid LIMIT ?");
        query.bind(1, mostRows);
        while (query.executeStep()) {
            rows.push_back({query.getColumn(0), query.getColumn(1), query.getColumn(2), query.getColumn(3),
                            query.getColumn(4).getInt() != 0, query.getColumn(5).getInt() != 0});
        }
        const int count = rows.size() > countRow ? rows[countRow].value : 0;
        if (count < fewestRows || static_cast<std::size_t>(count) > rows.size()) {
            return QStringLiteral("%1 has %2 rows and names %3").arg(fileName).arg(rows.size()).arg(count);
        }
        rows.resize(static_cast<std::size_t>(count));
        rows_ = std::move(rows);
    } catch (const std::exception &error) {
        return QStringLiteral("%1: %2").arg(fileName, QString::fromUtf8(error.what()));
    }
    return {};
}

} // namespace sim

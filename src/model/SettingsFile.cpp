#include "model/SettingsFile.h"

#include "model/ParamDefines.h"
#include "support/ReplaceContent.h"
#include "support/SettingsFileType.h"

#include <memory>
#include <sqlite3.h>

namespace ztv {

namespace {

constexpr int formatVersion = 1;
constexpr qsizetype longestNotes = 1 << 20; // characters

// The sizes of the texts are declared and not enforced.
constexpr const char *tables = "CREATE TABLE Settings (Tag SMALLINT, Name VARCHAR(40), Value INTEGER);"
                               "CREATE TABLE Properties (Notes TEXT, SWVersion TEXT, UserUnits TEXT);";

void InsertRows(SQLite::Database &database, const std::vector<SettingsRow> &rows) {
    SQLite::Statement insert(database, "INSERT INTO Settings (Tag, Name, Value) VALUES (?, ?, ?)");
    for (const SettingsRow &row : rows) {
        insert.bind(1, row.tag);
        insert.bind(2, row.name.toStdString());
        insert.bind(3, row.value);
        insert.exec();
        insert.reset();
    }
}

void InsertProperties(SQLite::Database &database, const SettingsProperties &properties) {
    SQLite::Statement insert(database,
                             "INSERT INTO Properties (Notes, SWVersion, UserUnits) VALUES (?, ?, ?)");
    insert.bind(1, properties.notes.toStdString());
    insert.bind(2, properties.swVersion.toStdString());
    insert.bind(3, properties.userUnits.toStdString());
    insert.exec();
}

QByteArray BytesOf(SQLite::Database &database) {
    sqlite3_int64 size = 0;
    const std::unique_ptr<unsigned char, decltype(&sqlite3_free)> bytes(
        sqlite3_serialize(database.getHandle(), "main", &size, 0), sqlite3_free);
    if (bytes == nullptr) {
        throw SQLite::Exception("out of memory");
    }
    return {reinterpret_cast<const char *>(bytes.get()), static_cast<qsizetype>(size)};
}

// Builds the database in memory, so that nothing of it is on disk before it is complete.
QByteArray Build(const std::vector<SettingsRow> &rows, const SettingsProperties &properties) {
    SQLite::Database database(":memory:", SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
    database.exec("PRAGMA application_id = " + std::to_string(SettingsFileType::ApplicationId));
    database.exec("PRAGMA user_version = " + std::to_string(formatVersion));
    database.exec(tables);
    InsertRows(database, rows);
    InsertProperties(database, properties);
    return BytesOf(database);
}

} // namespace

void WriteSettingsFile(const QString &fileName, const std::vector<SettingsRow> &rows,
                       const SettingsProperties &properties) {
    QByteArray content;
    try {
        content = Build(rows, properties);
    } catch (const SQLite::Exception &e) {
        throw Fault(Fault::Kind::Database,
                    QStringLiteral("%1: %2.").arg(fileName, QString::fromUtf8(e.what())));
    }
    ReplaceContent(fileName, content);
}

Fault SettingsFileReader::TooFewRecords(int records, const QString &wanted) const {
    return database_.Failure(QStringLiteral("table Settings has %1 records, %2").arg(records).arg(wanted));
}

std::int16_t SettingsFileReader::Count() {
    std::optional<std::int16_t> count;
    int position = 0;
    database_.ForEachRecord("Settings", {"Value"}, [&](const DatabaseRecord &record) {
        if (position++ == ParamDefines::ParameterCount) {
            count = record.Int16(0);
        }
        return !count;
    });
    if (!count) {
        throw TooFewRecords(position, QStringLiteral("and the count of its rows stands in record %1")
                                          .arg(ParamDefines::ParameterCount));
    }
    return *count;
}

void SettingsFileReader::ForEachValue(std::int16_t count,
                                      const std::function<void(std::int16_t, std::int32_t)> &visit) {
    std::int16_t position = 0;
    database_.ForEachRecord("Settings", {"Value"}, [&](const DatabaseRecord &record) {
        if (position >= count) {
            return false;
        }
        if (position > 0) {
            visit(position, record.Int32(0));
        }
        ++position;
        return true;
    });
    if (position < count) {
        throw TooFewRecords(position, QStringLiteral("fewer than its count %1").arg(count));
    }
}

QString SettingsFileReader::Notes() {
    std::optional<QString> notes;
    database_.AllowLongRecords();
    database_.ForEachRecord("Properties", {"Notes"}, [&](const DatabaseRecord &record) {
        notes = record.TextCutTo(0, longestNotes,
                                 QStringLiteral("\n[The notes were longer and have been cut here.]"));
        return false;
    });
    if (!notes) {
        throw database_.Failure(QStringLiteral("table Properties has no record"));
    }
    return *notes;
}

} // namespace ztv

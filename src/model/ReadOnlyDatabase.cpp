#include "model/ReadOnlyDatabase.h"

#include "model/SchemaEntries.h"

#include <QFile>
#include <QFileInfo>
#include <QUrl>
#include <algorithm>
#include <sqlite3.h>

namespace ztv {

namespace {

constexpr int longestText = 4096; // characters; these texts are names
constexpr qsizetype mostTextOfAFile = 4 << 20;
constexpr int largestFile = 32 << 20; // bytes
constexpr int longestRecord = 1 << 20;
constexpr int stepsPerCheck = 1000; // of the engine
constexpr int mostChecks = 10000;

// SQLite parses in time quadratic in the statement's length, and the progress handler can't interrupt the
// parser.
constexpr int longestStatement = 1024; // of our own, and of those in the file that define its tables

Fault DatabaseFault(const QString &where, const QString &message) {
    return Fault(Fault::Kind::Database, QStringLiteral("%1: %2.").arg(where, message));
}

// Returns the file's URI. It is marked immutable, so that no lock, journal or index file is created beside a
// file from outside.
std::string AddressOf(const QFileInfo &file) {
    QByteArray path = QUrl::toPercentEncoding(file.absoluteFilePath(), "/");
    if (!path.startsWith('/')) {
        path.prepend('/'); // a drive letter
    }
    return "file://" + path.toStdString() + "?immutable=1";
}

SQLite::Database Open(const QString &fileName) {
    const QFileInfo file(fileName);
    if (!file.exists()) {
        throw DatabaseFault(fileName, QStringLiteral("there is no such file"));
    }
    if (!file.isFile()) { // opening a pipe or a device may never end
        throw DatabaseFault(fileName, QStringLiteral("this isn't a file"));
    }
    if (file.size() > largestFile) {
        throw DatabaseFault(fileName, QStringLiteral("the file is too large"));
    }
    if (!HasFewSchemaEntries(fileName)) {
        throw DatabaseFault(fileName, QStringLiteral("there are too many tables"));
    }
    try {
        return SQLite::Database(AddressOf(file), SQLite::OPEN_READONLY | SQLite::OPEN_URI);
    } catch (const SQLite::Exception &e) {
        throw DatabaseFault(fileName, QString::fromUtf8(e.what()));
    }
}

// Stops a query that a crafted file makes endless.
int CountDown(void *checksLeft) {
    return --*static_cast<int *>(checksLeft) < 0 ? 1 : 0;
}

} // namespace

bool DatabaseRecord::IsNull(int column) const {
    return statement_.getColumn(column).isNull();
}

std::int64_t DatabaseRecord::Integer(int column, std::int64_t lowest, std::int64_t highest) const {
    const SQLite::Column value = statement_.getColumn(column);
    if (!value.isInteger()) {
        Fail(column, QStringLiteral("holds no whole number"));
    }
    const std::int64_t number = value.getInt64();
    if (number < lowest || number > highest) {
        Fail(column,
             QStringLiteral("holds %1, which isn't within %2 to %3").arg(number).arg(lowest).arg(highest));
    }
    return number;
}

std::int32_t DatabaseRecord::Int32(int column) const {
    using Limits = std::numeric_limits<std::int32_t>;
    return static_cast<std::int32_t>(Integer(column, Limits::min(), Limits::max()));
}

std::int16_t DatabaseRecord::Int16(int column) const {
    using Limits = std::numeric_limits<std::int16_t>;
    return static_cast<std::int16_t>(Integer(column, Limits::min(), Limits::max()));
}

bool DatabaseRecord::Boolean(int column) const {
    using Limits = std::numeric_limits<std::int64_t>;
    return Integer(column, Limits::min(), Limits::max()) != 0;
}

QString DatabaseRecord::Text(int column) const {
    const QString text = StartOfText(column, longestText + 1);
    if (text.size() > longestText) {
        Fail(column, QStringLiteral("holds a text of more than %1 characters").arg(longestText));
    }
    return text;
}

QString DatabaseRecord::TextCutTo(int column, qsizetype most, const QString &ending) const {
    QString text = StartOfText(column, most + 1);
    if (text.size() <= most) {
        return text;
    }
    text.truncate(most - ending.size());
    if (!text.isEmpty() && text.back().isHighSurrogate()) {
        text.chop(1);
    }
    return text + ending;
}

// Returns at most the first `most` characters, and decodes no more of a giant text.
QString DatabaseRecord::StartOfText(int column, qsizetype most) const {
    const SQLite::Column value = statement_.getColumn(column);
    if (!value.isText()) {
        Fail(column, QStringLiteral("holds no text"));
    }
    constexpr qsizetype mostBytesOfACharacter = 3; // of UTF-8, for one of UTF-16
    const char *const start = value.getText();
    const QByteArrayView bytes(start, std::min<qsizetype>(value.getBytes(), most * mostBytesOfACharacter));
    QString text = QString::fromUtf8(bytes);
    if (bytes.startsWith("\xEF\xBB\xBF")) {
        text.prepend(QChar(QChar::ByteOrderMark)); // Qt drops it, but in a database text it is a character
    }
    text.truncate(most);
    textRead_ += text.size();
    if (textRead_ > mostTextOfAFile) {
        Fail(column, QStringLiteral("comes after too much text"));
    }
    return text;
}

void DatabaseRecord::Fail(int column, const QString &what) const {
    throw DatabaseFault(
        where_,
        QStringLiteral("column %1 %2").arg(QString::fromUtf8(statement_.getColumnName(column)), what));
}

ReadOnlyDatabase::ReadOnlyDatabase(const QString &fileName)
    : fileName_(fileName),
      database_(Open(fileName)),
      checksLeft_(std::make_unique<int>(mostChecks)) {
    sqlite3 *handle = database_.getHandle();
    sqlite3_progress_handler(handle, stepsPerCheck, CountDown, checksLeft_.get());
    sqlite3_db_config(handle, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
    sqlite3_db_config(handle, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
    sqlite3_db_config(handle, SQLITE_DBCONFIG_ENABLE_TRIGGER, 0, nullptr);
    sqlite3_db_config(handle, SQLITE_DBCONFIG_ENABLE_VIEW, 0, nullptr);
    sqlite3_limit(handle, SQLITE_LIMIT_LENGTH, longestRecord);
    sqlite3_limit(handle, SQLITE_LIMIT_SQL_LENGTH, longestStatement);
    sqlite3_limit(handle, SQLITE_LIMIT_ATTACHED, 0);
    // Otherwise the engine reads a record that a page places after its own end from whatever memory is there.
    sqlite3_exec(handle, "PRAGMA cell_size_check = ON", nullptr, nullptr, nullptr);
}

// Rejects a table that isn't plain. A plain table contains only what was stored: it is no view or virtual
// table, whose reading runs code; it has no generated column, which expands a few bytes without limit; its
// records are in the order of their row ids.
void ReadOnlyDatabase::RequirePlainTable(const char *table) {
    SQLite::Statement kind(
        database_,
        "SELECT type, wr FROM pragma_table_list WHERE schema = 'main' AND name = ? COLLATE NOCASE");
    kind.bind(1, table);
    if (!kind.executeStep()) {
        throw Failure(QStringLiteral("there is no table %1").arg(QLatin1String(table)));
    }
    const bool withoutRowId = kind.getColumn(1).getInt() != 0;
    if (kind.getColumn(0).getString() != "table" || withoutRowId) {
        throw Failure(QStringLiteral("%1 isn't a plain table").arg(QLatin1String(table)));
    }
    SQLite::Statement columns(database_, "SELECT name, hidden FROM pragma_table_xinfo(?)");
    columns.bind(1, table);
    while (columns.executeStep()) {
        const QString name = QString::fromStdString(columns.getColumn(0).getString());
        const bool hidesRowId = name.compare(QStringLiteral("rowid"), Qt::CaseInsensitive) == 0;
        if (columns.getColumn(1).getInt() != 0 || hidesRowId) {
            throw Failure(
                QStringLiteral("column %1 of table %2 isn't a plain one").arg(name, QLatin1String(table)));
        }
    }
}

void ReadOnlyDatabase::ForEachRecord(const char *table, std::initializer_list<const char *> columns,
                                     const std::function<bool(const DatabaseRecord &)> &visit) {
    try {
        RequirePlainTable(table);
        // A missing column in brackets is an error; in double quotes it would count as a text.
        std::string names;
        for (const char *column : columns) {
            names += (names.empty() ? "[" : ", [") + std::string(column) + "]";
        }
        SQLite::Statement records(database_, "SELECT " + names + " FROM [" + table + "] ORDER BY rowid");
        for (std::int64_t position = 0; records.executeStep(); ++position) {
            const QString where =
                QStringLiteral("%1, table %2, record %3").arg(fileName_, QLatin1String(table)).arg(position);
            if (!visit(DatabaseRecord(records, where, textRead_))) {
                return;
            }
        }
    } catch (const SQLite::Exception &e) {
        throw Failure(QStringLiteral("table %1: %2").arg(QLatin1String(table), QString::fromUtf8(e.what())));
    }
}

void ReadOnlyDatabase::AllowLongRecords() {
    sqlite3_limit(database_.getHandle(), SQLITE_LIMIT_LENGTH, largestFile);
}

Fault ReadOnlyDatabase::Failure(const QString &message) const {
    return DatabaseFault(fileName_, message);
}

} // namespace ztv

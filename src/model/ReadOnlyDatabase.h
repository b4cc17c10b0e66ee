#pragma once

#include "support/Fault.h"

#include <QString>
#include <SQLiteCpp/SQLiteCpp.h>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <memory>

namespace ztv {

// The current record of a walk over a table. Its columns are the requested ones, in that order.
class DatabaseRecord {
public:
    // `textRead` counts the characters of all texts read from the file.
    DatabaseRecord(SQLite::Statement &statement, const QString &where, qsizetype &textRead)
        : statement_(statement),
          where_(where),
          textRead_(textRead) {}

    bool IsNull(int column) const;

    // Fault (database) when the column isn't a whole number from `lowest` to `highest`.
    std::int64_t Integer(int column, std::int64_t lowest, std::int64_t highest) const;
    std::int32_t Int32(int column) const;
    std::int16_t Int16(int column) const;

    // True for any whole number but 0. Fault (database) when the column isn't a whole number.
    bool Boolean(int column) const;

    // Fault (database) when the column is Null or not text, when the text is longer than a name in these
    // files may be, or when the texts read from the file exceed a limit in total.
    QString Text(int column) const;

    // The same for a text of any length. A text of more than `most` characters is cut and followed by
    // `ending`; together they have at most `most`.
    QString TextCutTo(int column, qsizetype most, const QString &ending) const;

private:
    QString StartOfText(int column, qsizetype most) const;
    [[noreturn]] void Fail(int column, const QString &what) const;

    SQLite::Statement &statement_;
    const QString &where_;
    qsizetype &textRead_;
};

// A database from outside, opened so that nothing in it can run, write or reach other files.
class ReadOnlyDatabase {
public:
    // Fault (database) with the engine's message when the file can't be opened.
    explicit ReadOnlyDatabase(const QString &fileName);

    // Calls `visit` with each record of a plain table in record order, until it returns false.
    // Fault (database) when `table` isn't a plain table or a column is missing.
    void ForEachRecord(const char *table, std::initializer_list<const char *> columns,
                       const std::function<bool(const DatabaseRecord &)> &visit);

    // Accepts records of more than a megabyte from now on. Until then they are rejected, so that a crafted
    // file can't make the engine copy many of them.
    void AllowLongRecords();

    // A fault that names the file.
    Fault Failure(const QString &message) const;

private:
    void RequirePlainTable(const char *table);

    QString fileName_;
    SQLite::Database database_;
    std::unique_ptr<int> checksLeft_; // outlives every statement
    qsizetype textRead_ = 0;
};

} // namespace ztv

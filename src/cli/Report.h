#pragma once

#include <QJsonArray>
#include <QJsonValue>
#include <QString>
#include <QStringList>
#include <cstdio>
#include <vector>

namespace ztv {

enum class ReportFormat { Text, Csv, Json };

// Prints a command's results to a stream: as text for a person, as CSV (RFC 4180) or as one JSON document.
class Report {
public:
    struct Column {
        QString key;           // in CSV's header and in JSON's objects
        qsizetype width = 0;   // of the text, in letters; its name may be wider
        bool isForText = true; // shown to a person, too
    };
    struct Cell {
        QString text;
        QJsonValue value; // in JSON, where numbers are numbers
    };
    using Row = std::vector<Cell>; // one cell for each column

    Report(ReportFormat format, std::vector<Column> columns, std::FILE *stream = stdout);

    // Prints the columns' names above a text, for columns that don't speak for themselves. CSV always has
    // them.
    void NameColumns();

    // Prints a row at once, but collects JSON's for End.
    void Add(const Row &row);

    // Call it once, after the last row.
    void End();

private:
    void PrintTexts(const QStringList &texts);
    void Print(const QString &line);

    ReportFormat format_;
    std::vector<Column> columns_;
    std::FILE *stream_;
    QJsonArray rows_;
    bool namesColumns_ = false;
};

// Makes a cell of a text or of a number.
Report::Cell CellOf(const QString &text);
Report::Cell CellOf(int number);

} // namespace ztv

#pragma once

#include <QJsonArray>
#include <QJsonValue>
#include <QString>
#include <QStringList>
#include <cstdio>
#include <exception>
#include <vector>

namespace ztv {

enum class ReportFormat { Text, Csv, Json };

// The reader of the results closed its end.
class ReaderGone : public std::exception {
public:
    const char *what() const noexcept override { return "the reader of the results is gone"; }
};

// Prints a command's results to a stream: as text for a person, as CSV (RFC 4180) or as JSON, which is one
// document or one a line. Printing throws ReaderGone, or a Failure (file) if the stream takes no more.
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

    enum class JsonLayout {
        Document,
        Lines // for results that come over time
    };

    Report(ReportFormat format, std::vector<Column> columns, std::FILE *stream,
           JsonLayout layout = JsonLayout::Document);
    // Ends the document of a command that a failure or a signal cut short.
    ~Report();
    Report(const Report &) = delete;
    Report &operator=(const Report &) = delete;

    // Prints the columns' names above a text's first row, for columns that don't speak for themselves. CSV
    // always has them.
    void NameColumns() { namesColumns_ = true; }

    // Prints a row at once, but collects a JSON document's for End.
    void Add(const Row &row);

    // Call it once, after the last row.
    void End();

private:
    void PrintNames();
    void PrintTexts(const QStringList &texts);
    void Print(const QString &line);

    ReportFormat format_;
    std::vector<Column> columns_;
    std::FILE *stream_;
    JsonLayout layout_;
    QJsonArray rows_;
    bool namesColumns_ = false;
    bool hasRows_ = false;
    bool isEnded_ = false;
};

// Makes a cell of a text or of a number.
Report::Cell CellOf(const QString &text);
Report::Cell CellOf(int number);

} // namespace ztv

#include "cli/Report.h"

#include "cli/Failure.h"

#include <QByteArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <utility>

namespace ztv {

namespace {

QString Quoted(const QString &text) {
    const bool isPlain =
        !text.contains(u',') && !text.contains(u'"') && !text.contains(u'\n') && !text.contains(u'\r');
    return isPlain ? text : u'"' + QString(text).replace(u'"', QStringLiteral("\"\"")) + u'"';
}

} // namespace

Report::Report(ReportFormat format, std::vector<Column> columns, std::FILE *stream, JsonLayout layout)
    : format_(format),
      columns_(std::move(columns)),
      stream_(stream),
      layout_(layout) {
    if (format_ == ReportFormat::Csv) {
        QStringList keys;
        for (const Column &column : columns_) {
            keys.append(Quoted(column.key));
        }
        Print(keys.join(u','));
    }
}

Report::~Report() {
    if (isEnded_) {
        return;
    }
    try {
        End();
    } catch (const std::exception &) { // the command ends with the reason that it has
    }
}

void Report::PrintNames() {
    QStringList names;
    for (const Column &column : columns_) {
        if (column.isForText) {
            names.append(column.key.leftJustified(column.width));
        }
    }
    PrintTexts(names);
}

void Report::Add(const Row &row) {
    QStringList texts;
    QJsonObject object;
    for (std::size_t index = 0; index < columns_.size(); ++index) {
        const Column &column = columns_[index];
        const Cell &cell = row.at(index);
        if (format_ == ReportFormat::Json) {
            object.insert(column.key, cell.value);
        } else if (format_ == ReportFormat::Csv) {
            texts.append(Quoted(cell.text));
        } else if (column.isForText) {
            const qsizetype name = namesColumns_ ? column.key.size() : 0;
            texts.append(cell.text.leftJustified(std::max(column.width, name)));
        }
    }
    switch (format_) {
    case ReportFormat::Json:
        if (layout_ == JsonLayout::Lines) {
            Print(QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact)));
        } else {
            rows_.append(object);
        }
        break;
    case ReportFormat::Csv:
        Print(texts.join(u','));
        break;
    case ReportFormat::Text:
        if (!std::exchange(hasRows_, true) && namesColumns_) {
            PrintNames();
        }
        PrintTexts(texts);
        break;
    }
}

void Report::End() {
    isEnded_ = true;
    if (format_ == ReportFormat::Json && layout_ == JsonLayout::Document) {
        Print(QString::fromUtf8(QJsonDocument(rows_).toJson(QJsonDocument::Indented)).trimmed());
    }
}

// Without blanks at the end.
void Report::PrintTexts(const QStringList &texts) {
    QString line = texts.join(QStringLiteral("  "));
    while (line.endsWith(u' ')) {
        line.chop(1);
    }
    Print(line);
}

void Report::Print(const QString &line) {
    const QByteArray bytes = line.toUtf8() + '\n';
    const auto size = static_cast<std::size_t>(bytes.size());
    const bool isWritten = std::fwrite(bytes.constData(), 1, size, stream_) == size;
    if (isWritten && std::fflush(stream_) == 0) { // before a message about the next sensor
        return;
    }
    if (errno == EPIPE) {
        throw ReaderGone();
    }
    throw Failure(ExitStatus::File,
                  QStringLiteral("The results can't be written: %1").arg(qt_error_string(errno)));
}

Report::Cell CellOf(const QString &text) {
    return {.text = text, .value = text};
}

Report::Cell CellOf(int number) {
    return {.text = QString::number(number), .value = number};
}

} // namespace ztv

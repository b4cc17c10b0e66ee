#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QFile>

namespace ztv {

// Writes a text file line by line. Ends each line with carriage return and line feed.
class TextFileWriter {
public:
    // Creates the file, or empties an existing one. Fault (file) when that can't be done.
    explicit TextFileWriter(const QString &path);

    // Fault (file) when the disk is full or the write fails, as with Close.
    void WriteLine(QByteArrayView line);

    // REQUIRES: called after the last line. A file that isn't closed may lack lines.
    void Close();

    // True when something else has written to the file. The file must then be abandoned, not closed: the
    // remaining lines would be written into the other content.
    bool HasChanged() const;

private:
    void Flush();

    QFile file_;
    QByteArray buffer_;
};

} // namespace ztv

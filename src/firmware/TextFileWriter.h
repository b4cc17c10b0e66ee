#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QFile>

// Writes a text file line by line, each ended by carriage return and line feed.
class TextFileWriter {
public:
    // Creates the file anew: what it held is gone. Fault (file) when that can't be done.
    explicit TextFileWriter(const QString &path);

    // Fault (file) when there is no room, as with Close.
    void WriteLine(QByteArrayView line);

    // Must be called at the end: a file that is abandoned may lack lines.
    void Close();

    // Whether somebody else has written to the file, which is then not to be closed but abandoned: what is
    // still to be written would stand at its place in the old content.
    bool HasChanged() const;

private:
    void Flush();

    QFile file_;
    QByteArray buffer_;
};

#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QDateTime>
#include <QFile>

namespace ztv {

// Reads a text file line by line. Carriage return, line feed, or both end a line; the end of the file ends
// the last one. Keeps at most `longestLine` characters of a line, however long it is.
class TextFileReader {
public:
    // Fault (file) when the file doesn't exist or can't be opened; a folder or a pipe can't.
    TextFileReader(const QString &path, qsizetype longestLine);

    // Returns true when no line follows. Fault (file) when the file can't be read, as with ReadLine.
    bool AtEnd();

    // Returns the next line without its end; empty at the end of the file. Valid until the next call.
    QByteArrayView ReadLine();

    // The fraction read, 0 to 1, also of a file that has become shorter.
    double Fraction() const;

    // True when the file was written to since it was opened.
    bool HasChanged() const;

private:
    void PassLineEnd();
    bool Fill();
    qsizetype CharactersBeforeLineEnd(qsizetype from) const;

    QFile file_;
    qint64 sizeOnOpening_ = 0;
    QDateTime timeOnOpening_;
    qsizetype longestLine_;
    QByteArray buffer_;
    qsizetype start_ = 0; // of the unread part of the buffer
    qsizetype end_ = 0;
    bool inLine_ = false; // the rest of a line, or its end, is to be skipped
};

} // namespace ztv

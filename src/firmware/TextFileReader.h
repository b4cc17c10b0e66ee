#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QDateTime>
#include <QFile>

// Reads a text file line by line. A line ends with carriage return, line feed, or both, and the last one may
// end with the file. However long a line is, no more than `longestLine` characters of it are kept.
class TextFileReader {
public:
    // Fault (file) when there is no such file or it can't be opened; a folder or a pipe can't.
    TextFileReader(const QString &path, qsizetype longestLine);

    // True when no line follows. Fault (file) when the file can't be read, as with ReadLine.
    bool AtEnd();

    // The next line without its end, for as long as nothing else is called; empty at the end of the file.
    QByteArrayView ReadLine();

    // The fraction read, 0 to 1, also of a file that shrinks meanwhile.
    double Fraction() const;

    // Whether somebody has written to the file since it was opened.
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
    qsizetype start_ = 0; // of what is unread in the buffer
    qsizetype end_ = 0;
    bool inLine_ = false; // the rest of a line, or its end, is still to be passed over
};

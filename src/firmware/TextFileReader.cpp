#include "firmware/TextFileReader.h"

#include "support/Fault.h"

#include <QFileInfo>
#include <algorithm>
#include <cstring>

namespace ztv {

namespace {

constexpr qsizetype chunkSize = 65536;

} // namespace

TextFileReader::TextFileReader(const QString &path, qsizetype longestLine)
    : file_(path),
      longestLine_(longestLine),
      buffer_(chunkSize + longestLine, Qt::Uninitialized) {
    if (path.isEmpty() || path.contains(QChar::Null) || !QFileInfo::exists(path)) {
        throw Fault::File(path, QStringLiteral("there is no such file"));
    }
    if (!QFileInfo(path).isFile()) { // opening a pipe would wait
        throw Fault::File(path, QStringLiteral("this isn't a file that can be read"));
    }
    if (!file_.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
        throw Fault::File(path, file_.errorString());
    }
    sizeOnOpening_ = file_.size();
    timeOnOpening_ = file_.fileTime(QFileDevice::FileModificationTime);
}

bool TextFileReader::AtEnd() {
    PassLineEnd();
    return start_ == end_ && !Fill();
}

QByteArrayView TextFileReader::ReadLine() {
    PassLineEnd();
    qsizetype length = CharactersBeforeLineEnd(start_);
    while (start_ + length == end_ && length < longestLine_ && Fill()) {
        length += CharactersBeforeLineEnd(start_ + length);
    }
    const QByteArrayView line(buffer_.constData() + start_, std::min(length, longestLine_));
    start_ += length;
    inLine_ = true;
    return line;
}

double TextFileReader::Fraction() const {
    const qint64 read = file_.pos() - (end_ - start_);
    return file_.size() > read ? static_cast<double>(read) / static_cast<double>(file_.size()) : 1;
}

bool TextFileReader::HasChanged() const {
    return file_.size() != sizeOnOpening_ ||
           file_.fileTime(QFileDevice::FileModificationTime) != timeOnOpening_;
}

// Skips the rest of the current line. Called only when the next line is wanted, so that the start of a line
// can be judged before all of it is read.
void TextFileReader::PassLineEnd() {
    if (!inLine_) {
        return;
    }
    inLine_ = false;
    start_ += CharactersBeforeLineEnd(start_);
    while (start_ == end_) {
        if (!Fill()) {
            return;
        }
        start_ += CharactersBeforeLineEnd(start_);
    }
    const char lineEnd = buffer_.at(start_++);
    if (lineEnd == '\r' && (start_ < end_ || Fill()) && buffer_.at(start_) == '\n') {
        ++start_;
    }
}

// Reads more after the unread part, which is less than a line. Returns false at the end of the file.
bool TextFileReader::Fill() {
    char *const buffer = buffer_.data();
    std::memmove(buffer, buffer + start_, static_cast<std::size_t>(end_ - start_));
    end_ -= start_;
    start_ = 0;
    const qint64 count = file_.read(buffer + end_, buffer_.size() - end_);
    if (count < 0) {
        throw Fault::File(file_.fileName(), file_.errorString());
    }
    end_ += count;
    return count > 0;
}

qsizetype TextFileReader::CharactersBeforeLineEnd(qsizetype from) const {
    const char *const first = buffer_.constData() + from;
    const char *const last = buffer_.constData() + end_;
    return std::find_if(first, last, [](char character) { return character == '\r' || character == '\n'; }) -
           first;
}

} // namespace ztv

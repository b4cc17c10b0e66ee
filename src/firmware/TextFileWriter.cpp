#include "firmware/TextFileWriter.h"

#include "support/Fault.h"

#include <QFileInfo>

namespace ztv {

namespace {

constexpr qsizetype flushSize = 65536;

} // namespace

TextFileWriter::TextFileWriter(const QString &path) : file_(path) {
    const QFileInfo old(path);
    if (path.isEmpty() || path.contains(QChar::Null) || (old.exists() && !old.isFile())) {
        throw Fault::File(path, QStringLiteral("this isn't a file that can be written"));
    }
    if (!file_.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered)) {
        throw Fault::File(path, file_.errorString());
    }
    buffer_.reserve(flushSize + 1024);
}

void TextFileWriter::WriteLine(QByteArrayView line) {
    buffer_.append(line).append("\r\n");
    if (buffer_.size() >= flushSize) {
        Flush();
    }
}

void TextFileWriter::Close() {
    Flush();
    file_.close();
    if (file_.error() != QFile::NoError) {
        throw Fault::File(file_.fileName(), file_.errorString());
    }
}

bool TextFileWriter::HasChanged() const {
    return file_.size() != file_.pos();
}

void TextFileWriter::Flush() {
    if (file_.write(buffer_) != buffer_.size()) {
        throw Fault::File(file_.fileName(),
                          file_.error() == QFile::NoError ? qt_error_string() : file_.errorString());
    }
    buffer_.resize(0);
}

} // namespace ztv

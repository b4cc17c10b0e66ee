#include "fuzz/Harness.h"

#include <QDir>
#include <QFile>
#include <cstdio>
#include <cstdlib>

namespace ztv {

namespace {

// Fails on a warning of Qt, as the tests do.
void Handle(QtMsgType type, const QMessageLogContext &, const QString &message) {
    if (type != QtDebugMsg && type != QtInfoMsg) {
        Fuzz::Fail(message.toUtf8().constData(), "Qt", 0);
    }
}

QString FolderTemplate() {
    const QString memory = QStringLiteral("/dev/shm");
    return (QDir(memory).exists() ? memory : QDir::tempPath()) + QStringLiteral("/ztv-fuzz-XXXXXX");
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *argumentCount, char ***arguments);

extern "C" int LLVMFuzzerInitialize(int *, char ***) {
    qInstallMessageHandler(Handle);
    return 0;
}

namespace Fuzz {

void Fail(const char *what, const char *file, int line) {
    std::fprintf(stderr, "%s:%d: this doesn't hold: %s\n", file, line, what);
    std::abort();
}

QByteArray Bytes(const std::uint8_t *data, std::size_t size) {
    return {reinterpret_cast<const char *>(data), static_cast<qsizetype>(size)};
}

std::uint8_t Input::Byte() {
    const QByteArray byte = Take(1);
    return byte.isEmpty() ? std::uint8_t{0} : static_cast<std::uint8_t>(byte.front());
}

std::int32_t Input::Int32() {
    const std::uint32_t low = Word();
    return static_cast<std::int32_t>(low | static_cast<std::uint32_t>(Word()) << 16);
}

QByteArray Input::Take(qsizetype most) {
    const qsizetype count = std::min(most, rest_.size());
    const QByteArray taken = rest_.first(count).toByteArray();
    rest_ = rest_.sliced(count);
    return taken;
}

Folder::Folder() : folder_(FolderTemplate()) {
    REQUIRE(folder_.isValid());
}

qsizetype Folder::FileCount() const {
    return QDir(folder_.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot).size();
}

void WriteFile(const QString &path, const QByteArray &content) {
    QFile file(path);
    REQUIRE(file.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
    REQUIRE(file.write(content) == content.size());
}

QByteArray ReadFile(const QString &path) {
    QFile file(path);
    REQUIRE(file.open(QIODevice::ReadOnly | QIODevice::Unbuffered));
    return file.readAll();
}

BoxAnswer CountingDialogs::OwnedMessageBox(const QString &text, BoxStyle style, const QString &) {
    REQUIRE(style.buttons == BoxButtons::Ok);
    REQUIRE(!text.isEmpty());
    ++boxes;
    lastText = text;
    return BoxAnswer::Ok;
}

std::optional<QString> CountingDialogs::OpenFileDialog(const FileQuestion &) {
    Fail("no file is asked for", __FILE__, __LINE__);
}

std::optional<QString> CountingDialogs::SaveFileDialog(const FileQuestion &) {
    Fail("no file is asked for", __FILE__, __LINE__);
}

} // namespace Fuzz

} // namespace ztv

#pragma once

#include "support/UserDialogs.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QTemporaryDir>
#include <cstddef>
#include <cstdint>

namespace ztv {

// States a property of every input. If it is violated, the program ends and the fuzzer keeps the input.
#define REQUIRE(condition) ((condition) ? void() : Fuzz::Fail(#condition, __FILE__, __LINE__))

// The function that each target defines. REQUIRES: the same input gives the same behaviour, whatever came
// before.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

namespace Fuzz {

[[noreturn]] void Fail(const char *what, const char *file, int line);

QByteArray Bytes(const std::uint8_t *data, std::size_t size);

// Reads an input from its front. Past the end, numbers read as 0 and byte arrays as empty.
class Input {
public:
    Input(const std::uint8_t *data, std::size_t size) : rest_(data, static_cast<qsizetype>(size)) {}

    bool AtEnd() const { return rest_.isEmpty(); }
    std::uint8_t Byte();
    std::uint8_t Below(int limit) { return static_cast<std::uint8_t>(Byte() % limit); }
    std::uint16_t Word() { return static_cast<std::uint16_t>(Byte() | Byte() << 8); }
    std::int32_t Int32();
    QByteArray Take(qsizetype most);
    QByteArray Rest() { return Take(rest_.size()); }

private:
    QByteArrayView rest_;
};

// A temporary folder, in memory if the system has a memory disk.
class Folder {
public:
    Folder();

    QString Path(const char *name) const { return folder_.filePath(QString::fromLatin1(name)); }
    QString Itself() const { return folder_.path(); }
    qsizetype FileCount() const;

private:
    QTemporaryDir folder_;
};

void WriteFile(const QString &path, const QByteArray &content);
QByteArray ReadFile(const QString &path);

// Answers and counts every box. No target opens a file dialog.
class CountingDialogs : public UserDialogs {
public:
    BoxAnswer OwnedMessageBox(const QString &text, BoxStyle style, const QString &title) override;
    std::optional<QString> OpenFileDialog(const FileQuestion &question) override;
    std::optional<QString> SaveFileDialog(const FileQuestion &question) override;

    int boxes = 0;
    QString lastText;
};

} // namespace Fuzz

} // namespace ztv

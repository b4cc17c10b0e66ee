#pragma once

#include "support/UserDialogs.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QTemporaryDir>
#include <cstddef>
#include <cstdint>

namespace ztv {

// What must hold of every input: a target that finds it doesn't ends the program, and the input is kept.
#define REQUIRE(condition) ((condition) ? void() : Fuzz::Fail(#condition, __FILE__, __LINE__))

// A target is one function; it must do the same for the same input, whatever came before.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

namespace Fuzz {

[[noreturn]] void Fail(const char *what, const char *file, int line);

QByteArray Bytes(const std::uint8_t *data, std::size_t size);

// Takes an input apart from its front. What isn't there any more reads as 0 or is empty.
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

// A folder in memory where there is one.
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

// Takes every box. No target asks for a file.
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

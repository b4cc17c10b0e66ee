#pragma once

#include "support/UserDialogs.h"

#include <cstdio>
#include <optional>

namespace ztv {

// Prints the text of each box and answers at once: Ok, Yes, no file.
class PrintedDialogs : public UserDialogs {
public:
    BoxAnswer OwnedMessageBox(const QString &text, BoxStyle style, const QString &) override {
        std::fprintf(stderr, "box: %s\n", qPrintable(text));
        return style.buttons == BoxButtons::Ok ? BoxAnswer::Ok : BoxAnswer::Yes;
    }
    std::optional<QString> OpenFileDialog(const FileQuestion &) override { return std::nullopt; }
    std::optional<QString> SaveFileDialog(const FileQuestion &) override { return std::nullopt; }
};

} // namespace ztv

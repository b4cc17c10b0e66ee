#pragma once

#include "support/UserDialogs.h"

// For what is to say nothing: each box is taken as seen, and no file is chosen.
class UnseenDialogs : public UserDialogs {
public:
    BoxAnswer OwnedMessageBox(const QString &, BoxStyle, const QString &) override { return BoxAnswer::Ok; }
    std::optional<QString> OpenFileDialog(const FileQuestion &) override { return std::nullopt; }
    std::optional<QString> SaveFileDialog(const FileQuestion &) override { return std::nullopt; }
};

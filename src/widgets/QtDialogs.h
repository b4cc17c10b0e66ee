#pragma once

#include "support/UserDialogs.h"

#include <QFileDialog>
#include <QPointer>
#include <QWidget>
#include <optional>

namespace ztv {

// Real message boxes and file dialogs.
class QtDialogs : public UserDialogs {
public:
    // Sets the window that owns the dialogs from now on. Without it, dialogs have no owner.
    void SetOwner(QWidget *owner) { owner_ = owner; }

    BoxAnswer OwnedMessageBox(const QString &text, BoxStyle style, const QString &title) override;
    std::optional<QString> OpenFileDialog(const FileQuestion &question) override;
    std::optional<QString> SaveFileDialog(const FileQuestion &question) override;

private:
    std::optional<QString> AskForFile(const FileQuestion &question, QFileDialog::AcceptMode mode);

    QPointer<QWidget> owner_;
    QString lastFolder_;
};

} // namespace ztv

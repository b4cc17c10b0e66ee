#pragma once

#include "support/UserDialogs.h"

#include <QFileDialog>

// A file dialog that takes a name as it was typed: a double quote is part of it, unless the whole name stands
// in quotes, and on saving it gets the suffix that its filter asks for. Without the macro for objects of
// their own class, or Qt would never show the system's dialog.
class FileDialog : public QFileDialog {
public:
    FileDialog(const FileQuestion &question, AcceptMode mode, QWidget *parent);

    // The file that the user chose. Nothing when the dialog was cancelled.
    std::optional<QString> Ask();

    void accept() override;

private:
    bool Saves() const { return acceptMode() == AcceptSave; }
    QString RequiredSuffix() const;
    QString WithSuffix(const QString &name) const;
    bool MayBeWritten(const QString &path);

    FileQuestion question_;
    QString named_; // what was accepted, where Qt would take it for several names
};

#pragma once

#include "support/UserDialogs.h"

#include <QFileDialog>
#include <optional>

namespace ztv {

// A file dialog that accepts a name as it was typed: a double quote is part of the name, unless the whole
// name is quoted. On saving, it appends the suffix that the filter requires. It has no meta-object of its
// own, or Qt would never show the system's dialog.
class FileDialog : public QFileDialog {
public:
    FileDialog(const FileQuestion &question, AcceptMode mode, QWidget *parent);

    // Shows the dialog and returns the file that the user chose; none if the user cancelled.
    std::optional<QString> Ask();

    void accept() override;

private:
    bool Saves() const { return acceptMode() == AcceptSave; }
    QString RequiredSuffix() const;
    QString WithSuffix(const QString &name) const;
    bool MayBeWritten(const QString &path);

    FileQuestion question_;
    QString named_; // the accepted name, if Qt would parse it as several names
};

} // namespace ztv

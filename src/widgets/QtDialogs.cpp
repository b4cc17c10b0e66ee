#include "widgets/QtDialogs.h"

#include "widgets/FileDialog.h"

#include <QDir>
#include <QFileInfo>
#include <QMessageBox>

namespace ztv {

namespace {

QMessageBox::Icon IconOf(BoxIcon icon) {
    switch (icon) {
    case BoxIcon::Information:
        return QMessageBox::Information;
    case BoxIcon::Question:
        return QMessageBox::Question;
    case BoxIcon::Exclamation:
        return QMessageBox::Warning;
    case BoxIcon::Critical:
        return QMessageBox::Critical;
    case BoxIcon::None:
        break;
    }
    return QMessageBox::NoIcon;
}

QMessageBox::StandardButtons ButtonsOf(BoxButtons buttons) {
    switch (buttons) {
    case BoxButtons::YesNo:
        return QMessageBox::Yes | QMessageBox::No;
    case BoxButtons::YesNoCancel:
        return QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel;
    case BoxButtons::Ok:
        break;
    }
    return QMessageBox::Ok;
}

} // namespace

BoxAnswer QtDialogs::OwnedMessageBox(const QString &text, BoxStyle style, const QString &title) {
    QMessageBox box(IconOf(style.icon), title, text, ButtonsOf(style.buttons), owner_);
    box.setTextFormat(Qt::PlainText); // texts quote file names and replies, which are never markup
    box.setInformativeText(style.informativeText);
    switch (box.exec()) {
    case QMessageBox::Yes:
        return BoxAnswer::Yes;
    case QMessageBox::No:
        return BoxAnswer::No;
    case QMessageBox::Ok:
        return BoxAnswer::Ok;
    default:
        return style.buttons == BoxButtons::Ok ? BoxAnswer::Ok : BoxAnswer::Cancel;
    }
}

std::optional<QString> QtDialogs::OpenFileDialog(const FileQuestion &question) {
    return AskForFile(question, QFileDialog::AcceptOpen);
}

std::optional<QString> QtDialogs::SaveFileDialog(const FileQuestion &question) {
    return AskForFile(question, QFileDialog::AcceptSave);
}

std::optional<QString> QtDialogs::AskForFile(const FileQuestion &question, QFileDialog::AcceptMode mode) {
    FileDialog dialog(question, mode, owner_);
    const QFileInfo suggestion(question.suggestion);
    if (!question.suggestion.isEmpty() && !suggestion.isDir()) {
        dialog.setDirectory(suggestion.absolutePath());
        dialog.selectFile(suggestion.fileName());
    } else if (!question.suggestion.isEmpty() || !lastFolder_.isEmpty()) {
        dialog.setDirectory(question.suggestion.isEmpty() ? lastFolder_ : question.suggestion);
    }
    const std::optional<QString> chosen = dialog.Ask();
    if (!chosen) {
        return std::nullopt;
    }
    lastFolder_ = QFileInfo(*chosen).absolutePath();
    return QDir::toNativeSeparators(*chosen);
}

} // namespace ztv

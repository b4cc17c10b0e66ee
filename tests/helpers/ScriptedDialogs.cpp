#include "tests/helpers/ScriptedDialogs.h"

#include <gtest/gtest.h>

namespace ztv {

ScriptedDialogs::~ScriptedDialogs() {
    for (const Expected &expected : expected_) {
        ADD_FAILURE() << "a dialog never came: "
                      << (expected.kind == Kind::Box ? expected.text.toStdString() : "for a file");
    }
}

void ScriptedDialogs::Expect(const QString &text, BoxIcon icon, BoxButtons buttons, BoxAnswer answer,
                             std::function<void()> whileOpen, const QString &title) {
    Expected box;
    box.text = text;
    box.title = title;
    box.icon = icon;
    box.buttons = buttons;
    box.answer = answer;
    box.whileOpen = std::move(whileOpen);
    expected_.push_back(std::move(box));
}

void ScriptedDialogs::ExpectNotice(const QString &text, BoxIcon icon, const QString &title,
                                   std::function<void()> whileOpen) {
    Expect(text, icon, BoxButtons::Ok, BoxAnswer::Ok, std::move(whileOpen), title);
}

void ScriptedDialogs::ExpectTextWith(const QString &part, BoxIcon icon, const QString &title) {
    ExpectNotice(part, icon, title);
    expected_.back().whole = false;
}

void ScriptedDialogs::ExpectOpenFile(std::optional<QString> answer,
                                     std::function<void(const FileQuestion &)> check) {
    Expected dialog;
    dialog.kind = Kind::OpenFile;
    dialog.file = std::move(answer);
    dialog.check = std::move(check);
    expected_.push_back(std::move(dialog));
}

void ScriptedDialogs::ExpectSaveFile(std::optional<QString> answer,
                                     std::function<void(const FileQuestion &)> check) {
    ExpectOpenFile(std::move(answer), std::move(check));
    expected_.back().kind = Kind::SaveFile;
}

std::optional<ScriptedDialogs::Expected> ScriptedDialogs::Take(Kind kind, const QString &what) {
    if (expected_.empty() || expected_.front().kind != kind) {
        ADD_FAILURE() << "unexpected: " << what.toStdString();
        return std::nullopt;
    }
    Expected next = std::move(expected_.front());
    expected_.pop_front();
    return next;
}

BoxAnswer ScriptedDialogs::OwnedMessageBox(const QString &text, BoxStyle style, const QString &title) {
    informativeText_ = style.informativeText;
    const std::optional<Expected> box = Take(Kind::Box, text);
    if (!box) {
        return style.buttons == BoxButtons::Ok ? BoxAnswer::Ok : BoxAnswer::No;
    }
    if (box->whole) {
        EXPECT_EQ(text.toStdString(), box->text.toStdString());
    } else {
        EXPECT_NE(text.indexOf(box->text), -1) << text.toStdString() << " lacks " << box->text.toStdString();
    }
    EXPECT_EQ(title.toStdString(), box->title.toStdString());
    EXPECT_EQ(static_cast<int>(style.icon), static_cast<int>(box->icon)) << text.toStdString();
    EXPECT_EQ(static_cast<int>(style.buttons), static_cast<int>(box->buttons)) << text.toStdString();
    if (box->whileOpen) {
        box->whileOpen();
    }
    return box->answer;
}

std::optional<QString> ScriptedDialogs::AnswerFile(Kind kind, const char *what,
                                                   const FileQuestion &question) {
    const std::optional<Expected> dialog = Take(kind, QString::fromLatin1(what));
    if (!dialog) {
        return std::nullopt;
    }
    if (dialog->check) {
        dialog->check(question);
    }
    return dialog->file;
}

std::optional<QString> ScriptedDialogs::OpenFileDialog(const FileQuestion &question) {
    return AnswerFile(Kind::OpenFile, "a dialog to open a file", question);
}

std::optional<QString> ScriptedDialogs::SaveFileDialog(const FileQuestion &question) {
    return AnswerFile(Kind::SaveFile, "a dialog to save a file", question);
}

} // namespace ztv

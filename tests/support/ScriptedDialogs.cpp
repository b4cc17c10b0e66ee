#include "tests/support/ScriptedDialogs.h"

#include "support/ApplicationTitle.h"

#include <gtest/gtest.h>

ScriptedDialogs::~ScriptedDialogs() {
    for (const Box &box : expected_) {
        ADD_FAILURE() << "a box never came: " << box.text.toStdString();
    }
}

void ScriptedDialogs::Expect(const QString &text, BoxIcon icon, BoxButtons buttons, BoxAnswer answer,
                             std::function<void()> whileOpen) {
    expected_.push_back({.text = text,
                         .whole = true,
                         .icon = icon,
                         .buttons = buttons,
                         .answer = answer,
                         .whileOpen = std::move(whileOpen)});
}

void ScriptedDialogs::ExpectNotice(const QString &text, BoxIcon icon) {
    Expect(text, icon, BoxButtons::Ok, BoxAnswer::Ok);
}

void ScriptedDialogs::ExpectTextWith(const QString &part, BoxIcon icon) {
    ExpectNotice(part, icon);
    expected_.back().whole = false;
}

BoxAnswer ScriptedDialogs::OwnedMessageBox(const QString &text, BoxStyle style, const QString &title) {
    if (expected_.empty()) {
        ADD_FAILURE() << "an unexpected box: " << text.toStdString();
        return style.buttons == BoxButtons::Ok ? BoxAnswer::Ok : BoxAnswer::No;
    }
    const Box box = expected_.front();
    expected_.pop_front();
    if (box.whole) {
        EXPECT_EQ(text.toStdString(), box.text.toStdString());
    } else {
        EXPECT_NE(text.indexOf(box.text), -1) << text.toStdString() << " lacks " << box.text.toStdString();
    }
    EXPECT_EQ(title.toStdString(), ApplicationTitle().toStdString());
    EXPECT_EQ(static_cast<int>(style.icon), static_cast<int>(box.icon)) << text.toStdString();
    EXPECT_EQ(static_cast<int>(style.buttons), static_cast<int>(box.buttons)) << text.toStdString();
    if (box.whileOpen) {
        box.whileOpen();
    }
    return box.answer;
}

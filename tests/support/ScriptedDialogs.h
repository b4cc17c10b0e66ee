#pragma once

#include "support/UserDialogs.h"

#include <deque>
#include <functional>

// Stands in for the person who answers boxes. Each box must have been expected, in order, and each that
// was expected must come.
class ScriptedDialogs : public UserDialogs {
public:
    ~ScriptedDialogs() override;

    // The next box has this text and look and gets this answer. `whileOpen` runs while it is open.
    void Expect(const QString &text, BoxIcon icon, BoxButtons buttons, BoxAnswer answer,
                std::function<void()> whileOpen = {});
    void ExpectNotice(const QString &text, BoxIcon icon = BoxIcon::Exclamation);

    // The next box's text needs only to hold this.
    void ExpectTextWith(const QString &part, BoxIcon icon);

    bool AllCame() const { return expected_.empty(); }

    BoxAnswer OwnedMessageBox(const QString &text, BoxStyle style, const QString &title) override;

private:
    struct Box {
        QString text;
        bool whole = true;
        BoxIcon icon = BoxIcon::None;
        BoxButtons buttons = BoxButtons::Ok;
        BoxAnswer answer = BoxAnswer::Ok;
        std::function<void()> whileOpen;
    };

    std::deque<Box> expected_;
};

#pragma once

#include "support/ApplicationTitle.h"
#include "support/UserDialogs.h"

#include <deque>
#include <functional>

namespace ztv {

// Stands in for the person who answers boxes and file dialogs. Each must have been expected, in order, and
// each that was expected must come.
class ScriptedDialogs : public UserDialogs {
public:
    ~ScriptedDialogs() override;

    // The next box has this text and look and gets this answer. `whileOpen` runs while it is open.
    void Expect(const QString &text, BoxIcon icon, BoxButtons buttons, BoxAnswer answer,
                std::function<void()> whileOpen = {}, const QString &title = ApplicationTitle());
    void ExpectNotice(const QString &text, BoxIcon icon = BoxIcon::Exclamation,
                      const QString &title = ApplicationTitle(), std::function<void()> whileOpen = {});

    // The next box's text needs only to hold this.
    void ExpectTextWith(const QString &part, BoxIcon icon, const QString &title = ApplicationTitle());

    // Next comes a file dialog, which gets this answer. `check` sees what it was asked for.
    void ExpectOpenFile(std::optional<QString> answer, std::function<void(const FileQuestion &)> check = {});
    void ExpectSaveFile(std::optional<QString> answer, std::function<void(const FileQuestion &)> check = {});

    bool AllCame() const { return expected_.empty(); }
    std::size_t StillExpected() const { return expected_.size(); }

    BoxAnswer OwnedMessageBox(const QString &text, BoxStyle style, const QString &title) override;
    std::optional<QString> OpenFileDialog(const FileQuestion &question) override;
    std::optional<QString> SaveFileDialog(const FileQuestion &question) override;

private:
    enum class Kind { Box, OpenFile, SaveFile };

    struct Expected {
        Kind kind = Kind::Box;
        QString text;
        QString title;
        bool whole = true;
        BoxIcon icon = BoxIcon::None;
        BoxButtons buttons = BoxButtons::Ok;
        BoxAnswer answer = BoxAnswer::Ok;
        std::function<void()> whileOpen;
        std::optional<QString> file;
        std::function<void(const FileQuestion &)> check;
    };

    // The next one that was expected, if it is of that kind.
    std::optional<Expected> Take(Kind kind, const QString &what);
    std::optional<QString> AnswerFile(Kind kind, const char *what, const FileQuestion &question);

    std::deque<Expected> expected_;
};

} // namespace ztv

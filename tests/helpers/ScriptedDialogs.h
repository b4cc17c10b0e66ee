#pragma once

#include "support/ApplicationTitle.h"
#include "support/UserDialogs.h"

#include <deque>
#include <functional>

namespace ztv {

// Answers boxes and file dialogs in the user's place. Fails on one that wasn't expected at that point, and on
// one that never came.
class ScriptedDialogs : public UserDialogs {
public:
    ~ScriptedDialogs() override;

    // Expects a box with this text and look and gives this answer. Calls `whileOpen` while the box is open.
    void Expect(const QString &text, BoxIcon icon, BoxButtons buttons, BoxAnswer answer,
                std::function<void()> whileOpen = {}, const QString &title = ApplicationTitle());
    void ExpectNotice(const QString &text, BoxIcon icon = BoxIcon::Exclamation,
                      const QString &title = ApplicationTitle(), std::function<void()> whileOpen = {});

    // Expects a box whose text contains `part`.
    void ExpectTextWith(const QString &part, BoxIcon icon, const QString &title = ApplicationTitle());

    // Expects a file dialog and gives this answer. `check` receives the dialog's request.
    void ExpectOpenFile(std::optional<QString> answer, std::function<void(const FileQuestion &)> check = {});
    void ExpectSaveFile(std::optional<QString> answer, std::function<void(const FileQuestion &)> check = {});

    // Returns the informative text of the last box; tests of the box's own text don't compare it.
    const QString &LastInformativeText() const { return informativeText_; }

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

    // The next expected box or dialog, if it is of that kind.
    std::optional<Expected> Take(Kind kind, const QString &what);
    std::optional<QString> AnswerFile(Kind kind, const char *what, const FileQuestion &question);

    std::deque<Expected> expected_;
    QString informativeText_;
};

} // namespace ztv

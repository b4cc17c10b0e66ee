#include "support/UserDialogs.h"

namespace ztv {

void Warn(UserDialogs &dialogs, const QString &text, const QString &title) {
    dialogs.OwnedMessageBox(text, {.icon = BoxIcon::Exclamation, .buttons = BoxButtons::Ok}, title);
}

void WarnInDetail(UserDialogs &dialogs, const QString &text, const QString &informativeText) {
    dialogs.OwnedMessageBox(
        text, {.icon = BoxIcon::Exclamation, .buttons = BoxButtons::Ok, .informativeText = informativeText},
        ApplicationTitle());
}

bool Confirm(UserDialogs &dialogs, const QString &question, const QString &title) {
    return dialogs.OwnedMessageBox(question, {.icon = BoxIcon::Question, .buttons = BoxButtons::YesNo},
                                   title) == BoxAnswer::Yes;
}

} // namespace ztv

#pragma once

#include <QString>

enum class BoxIcon { None, Information, Question, Exclamation, Critical };
enum class BoxButtons { Ok, YesNo, YesNoCancel };
enum class BoxAnswer { Ok, Yes, No, Cancel };

struct BoxStyle {
    BoxIcon icon = BoxIcon::None;
    BoxButtons buttons = BoxButtons::Ok;
};

// The one road to message boxes, so that a test can stand in for the person who answers them.
class UserDialogs {
public:
    virtual ~UserDialogs() = default;

    // Shows a modal box owned by the main window and returns the button pressed. The event loop turns
    // while it is open.
    virtual BoxAnswer OwnedMessageBox(const QString &text, BoxStyle style, const QString &title) = 0;
};

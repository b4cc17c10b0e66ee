#pragma once

#include "support/ApplicationTitle.h"

#include <QString>
#include <QStringList>
#include <cstddef>
#include <optional>
#include <vector>

namespace ztv {

enum class BoxIcon { None, Information, Question, Exclamation, Critical };
enum class BoxButtons { Ok, YesNo, YesNoCancel };
enum class BoxAnswer { Ok, Yes, No, Cancel };

struct BoxStyle {
    BoxIcon icon = BoxIcon::None;
    BoxButtons buttons = BoxButtons::Ok;
    QString informativeText = {}; // shown below the box's text; may be empty
};

// One entry of a file dialog's list of filters.
struct FileFilter {
    QString caption;
    QStringList patterns;        // of file names; case doesn't matter
    QString requiredSuffix = {}; // appended on saving to a name that doesn't end so; empty: none
};

// A request for a file dialog.
struct FileQuestion {
    std::vector<FileFilter> filters;
    std::size_t preselectedFilter = 0;
    QString suggestion;    // the file that is preselected, or the folder to start in; may be empty
    QString defaultSuffix; // appended on saving to a name without a suffix
    QString title = {};    // the usual title if empty
};

// The only way to message boxes and file dialogs, so that a test can replace the person who answers them. The
// event loop turns while one is open.
class UserDialogs {
public:
    virtual ~UserDialogs() = default;

    // Shows a modal box owned by the main window and returns the button pressed.
    virtual BoxAnswer OwnedMessageBox(const QString &text, BoxStyle style, const QString &title) = 0;

    // Asks for an existing file. Returns nothing when the user cancels. The path is a full one with the
    // platform's separators.
    virtual std::optional<QString> OpenFileDialog(const FileQuestion &question) = 0;

    // Asks for a file to write, and for confirmation before an existing file is overwritten.
    virtual std::optional<QString> SaveFileDialog(const FileQuestion &question) = 0;
};

// Shows an exclamation with an Ok button.
void Warn(UserDialogs &dialogs, const QString &text, const QString &title = ApplicationTitle());

// Shows the same with an informative text below the box's text.
void WarnInDetail(UserDialogs &dialogs, const QString &text, const QString &informativeText);

// Asks a question with the buttons Yes and No. Returns true on Yes.
bool Confirm(UserDialogs &dialogs, const QString &question, const QString &title = ApplicationTitle());

} // namespace ztv

#pragma once

#include <QString>
#include <QStringList>
#include <optional>
#include <vector>

enum class BoxIcon { None, Information, Question, Exclamation, Critical };
enum class BoxButtons { Ok, YesNo, YesNoCancel };
enum class BoxAnswer { Ok, Yes, No, Cancel };

struct BoxStyle {
    BoxIcon icon = BoxIcon::None;
    BoxButtons buttons = BoxButtons::Ok;
};

// One choice of the list by which a file dialog picks what it shows.
struct FileFilter {
    QString caption;
    QStringList patterns;        // of file names, in either case of letters
    QString requiredSuffix = {}; // what a name gets on saving unless it ends so; empty where any will do
};

// The request to a file dialog.
struct FileQuestion {
    std::vector<FileFilter> filters;
    std::size_t preselectedFilter = 0;
    QString suggestion;    // the file that is preselected, or the folder to start in; may be empty
    QString defaultSuffix; // what a name typed without one gets on saving
    QString title = {};    // the usual one if empty
};

// The one road to message boxes and file dialogs, so that a test can stand in for the person who answers
// them. The event loop turns while one is open.
class UserDialogs {
public:
    virtual ~UserDialogs() = default;

    // Shows a modal box owned by the main window and returns the button pressed.
    virtual BoxAnswer OwnedMessageBox(const QString &text, BoxStyle style, const QString &title) = 0;

    // Asks for a file that is there. Nothing when the user cancels. The path is a full one with the
    // platform's separators.
    virtual std::optional<QString> OpenFileDialog(const FileQuestion &question) = 0;

    // Asks for a file to write, and before one that is there is overwritten.
    virtual std::optional<QString> SaveFileDialog(const FileQuestion &question) = 0;
};

#include "shell/FileCommands.h"

#include "support/ApplicationTitle.h"
#include "support/Fault.h"

#include <QStandardPaths>

namespace ztv {

namespace {

FileQuestion QuestionOf(const QString &currentFileName) {
    // Uses "*", because on systems other than Windows a name needs no dot.
    return {.filters = {{.caption = QStringLiteral("All Files (*.*)"), .patterns = {QStringLiteral("*")}},
                        {.caption = QStringLiteral("Zentrova Files (*.ZTV)"),
                         .patterns = {QStringLiteral("*.ztv"), QStringLiteral("*.ZTV")},
                         .requiredSuffix = QStringLiteral("ztv")}},
            .preselectedFilter = 1,
            .suggestion = currentFileName,
            .defaultSuffix = QStringLiteral("ztv")};
}

} // namespace

BoxAnswer FileCommands::Ask(const QString &text, const BoxStyle &style) {
    return dependencies_.dialogs.OwnedMessageBox(text, style, ApplicationTitle());
}

bool FileCommands::OfferToSaveChanges(const QString &question) {
    if (!dependencies_.changesNeedSaving()) {
        return true;
    }
    const BoxAnswer answer = Ask(question, {.icon = BoxIcon::Question, .buttons = BoxButtons::YesNoCancel});
    if (answer == BoxAnswer::Yes) {
        Save(SaveAs::CurrentName);
    }
    return answer != BoxAnswer::Cancel;
}

bool FileCommands::DownloadIsWanted() {
    return !dependencies_.portIsOpen() ||
           Ask(QStringLiteral("Opening a file when online will load\nthe Zentrova with the new settings.\n\n"
                              "Continue?"),
               {.icon = BoxIcon::Exclamation, .buttons = BoxButtons::YesNo}) == BoxAnswer::Yes;
}

void FileCommands::OpenAtStart(const QString &name) {
    const OpenOutcome outcome = dependencies_.openFile(name);
    if (outcome.result == FileOpened::Failed) {
        silentFailure_ = Failure{.isSave = false, .name = name, .reason = outcome.fault};
    } else {
        loadedFileName_ = name;
    }
}

void FileCommands::Open() {
    OpenFrom(currentFileName_);
}

void FileCommands::OpenBackup() {
    OpenFrom(dependencies_.backups.Folder());
}

bool FileCommands::NameIsABackup() const {
    return !currentFileName_.isEmpty() && dependencies_.backups.Contains(currentFileName_);
}

// A file opened from the folder of the backups is saved elsewhere, unless the user chooses otherwise.
QString FileCommands::NameToSuggest() const {
    return NameIsABackup() ? QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation)
                           : currentFileName_;
}

void FileCommands::OpenFrom(const QString &suggestion) {
    if (!OfferToSaveChanges(QStringLiteral("Save changes in file %1?").arg(currentFileName_)) ||
        !DownloadIsWanted()) {
        return;
    }
    const std::optional<QString> name = dependencies_.dialogs.OpenFileDialog(QuestionOf(suggestion));
    if (!name) {
        return;
    }
    const OpenOutcome outcome = dependencies_.openFile(*name);
    silentFailure_.reset();
    if (!outcome.fault.isEmpty()) {
        dependencies_.dialogs.OwnedMessageBox(outcome.fault,
                                              {.icon = BoxIcon::None, .buttons = BoxButtons::Ok}, QString());
    }
    switch (outcome.result) {
    case FileOpened::Whole:
        currentFileName_ = *name;
        loadedFileName_ = *name;
        dependencies_.updateCaption();
        break;
    case FileOpened::InPart:
        Warn(dependencies_.dialogs, QStringLiteral("Not all items were loaded from the file!"));
        dependencies_.updateCaption();
        break;
    default:
        Warn(dependencies_.dialogs, QStringLiteral("Error opening file!"));
        break;
    }
    dependencies_.showTable();
}

void FileCommands::Save(SaveAs which) {
    const bool asks = which == SaveAs::AskedName || currentFileName_.isEmpty() || NameIsABackup();
    if (asks) {
        const std::optional<QString> name = dependencies_.dialogs.SaveFileDialog(QuestionOf(NameToSuggest()));
        if (!name) {
            return;
        }
        currentFileName_ = *name;
    }
    silentFailure_.reset();
    bool notSaved = false;
    try {
        notSaved = dependencies_.saveFile(currentFileName_);
    } catch (const Fault &fault) {
        // Deliberate: a save that asked for its name fails without a box; any other ends the program.
        if (!asks) {
            throw;
        }
        silentFailure_ = Failure{.isSave = true, .name = currentFileName_, .reason = fault.Description()};
        return;
    }
    if (notSaved) {
        Warn(dependencies_.dialogs, QStringLiteral("Error. File not saved!"));
        return;
    }
    loadedFileName_ = currentFileName_;
    Ask(QStringLiteral("File saved successfully."),
        {.icon = BoxIcon::Information, .buttons = BoxButtons::Ok});
    dependencies_.updateCaption();
}

} // namespace ztv

#include "shell/FileCommands.h"

#include "support/ApplicationTitle.h"
#include "support/Fault.h"

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

BoxAnswer FileCommands::Ask(const QString &text, BoxStyle style) {
    return surroundings_.dialogs.OwnedMessageBox(text, style, ApplicationTitle());
}

void FileCommands::Tell(const QString &text, BoxIcon icon) {
    Ask(text, {.icon = icon, .buttons = BoxButtons::Ok});
}

bool FileCommands::LookAfterChanges(const QString &question) {
    if (!surroundings_.changesNeedSaving()) {
        return true;
    }
    const BoxAnswer answer = Ask(question, {.icon = BoxIcon::Question, .buttons = BoxButtons::YesNoCancel});
    if (answer == BoxAnswer::Yes) {
        Save(SaveAs::CurrentName);
    }
    return answer != BoxAnswer::Cancel;
}

bool FileCommands::DownloadIsWanted() {
    return !surroundings_.portIsOpen() ||
           Ask(QStringLiteral("Opening a file when online will load\nthe Zentrova with the new settings.\n\n"
                              "Continue?"),
               {.icon = BoxIcon::Exclamation, .buttons = BoxButtons::YesNo}) == BoxAnswer::Yes;
}

void FileCommands::Open() {
    if (!LookAfterChanges(QStringLiteral("Save changes in file %1?").arg(currentFileName_)) ||
        !DownloadIsWanted()) {
        return;
    }
    const std::optional<QString> name = surroundings_.dialogs.OpenFileDialog(QuestionOf(currentFileName_));
    if (!name) {
        return;
    }
    const OpenOutcome outcome = surroundings_.openFile(*name);
    if (!outcome.fault.isEmpty()) {
        surroundings_.dialogs.OwnedMessageBox(outcome.fault,
                                              {.icon = BoxIcon::None, .buttons = BoxButtons::Ok}, QString());
    }
    switch (outcome.result) {
    case FileOpened::Whole:
        currentFileName_ = *name;
        surroundings_.updateCaption();
        break;
    case FileOpened::InPart:
        Tell(QStringLiteral("Not all items were loaded from the file!"), BoxIcon::Exclamation);
        surroundings_.updateCaption();
        break;
    default:
        Tell(QStringLiteral("Error opening file!"), BoxIcon::Exclamation);
        break;
    }
    surroundings_.showTable();
}

void FileCommands::Save(SaveAs which) {
    const bool asks = which == SaveAs::AskedName || currentFileName_.isEmpty();
    if (asks) {
        const std::optional<QString> name =
            surroundings_.dialogs.SaveFileDialog(QuestionOf(currentFileName_));
        if (!name) {
            return;
        }
        currentFileName_ = *name;
    }
    bool notSaved = false;
    try {
        notSaved = surroundings_.saveFile(currentFileName_);
    } catch (const Fault &) {
        // Deliberate: a save that asked for its name fails silently; any other ends the program.
        if (!asks) {
            throw;
        }
        return;
    }
    if (notSaved) {
        Tell(QStringLiteral("Error. File not saved!"), BoxIcon::Exclamation);
        return;
    }
    Tell(QStringLiteral("File saved successfully."), BoxIcon::Information);
    surroundings_.updateCaption();
}

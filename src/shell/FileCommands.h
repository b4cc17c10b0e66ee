#pragma once

#include "model/BackupFiles.h"
#include "model/ClassZentrova.h"
#include "support/UserDialogs.h"

#include <QString>
#include <functional>
#include <optional>
#include <utility>

namespace ztv {

// The settings-file commands of menu and toolbar: asks the user their questions, in order, and shows their
// outcomes.
class FileCommands {
public:
    enum class SaveAs { CurrentName = 0, AskedName = 1 };

    struct Dependencies {
        UserDialogs &dialogs;
        std::function<bool()> changesNeedSaving;
        std::function<bool()> portIsOpen;
        std::function<OpenOutcome(const QString &)> openFile;
        std::function<bool(const QString &)> saveFile; // true: not saved
        std::function<void()> updateCaption;
        std::function<void()> showTable;       // shows it on the tabs
        BackupFiles backups = BackupFiles({}); // a save never replaces one unasked
    };

    // A command that failed without a box.
    struct Failure {
        bool isSave = false;
        QString name;
        QString reason;
    };

    explicit FileCommands(Dependencies dependencies) : dependencies_(std::move(dependencies)) {}

    // Returns the name of the open file; empty if none is open.
    const QString &CurrentFileName() const { return currentFileName_; }

    // Returns the name of the file whose values the table got last, also from the command line; empty if it
    // got none.
    const QString &LoadedFileName() const { return loadedFileName_; }

    // Returns the failure that no box has shown; none since a later file command succeeded or showed a box.
    const std::optional<Failure> &SilentFailure() const { return silentFailure_; }

    // Opens the file of the command line. Deliberate: shows no box if it can't be opened, and a later "Save"
    // asks for a name.
    void OpenAtStart(const QString &name);

    void Open();

    // Opens a file as Open does; the dialog starts in the folder of the backups.
    void OpenBackup();

    // Asks about unsaved changes, if there are any, and saves them on Yes. Returns false on Cancel.
    bool OfferToSaveChanges(const QString &question);

    // Saves the file; asks for a name on SaveAs::AskedName, if there is no current one, or if it is that of a
    // backup. A fault during
    // saving reaches the caller, unless the name was asked for: then the command ends silently.
    void Save(SaveAs which);

private:
    bool DownloadIsWanted();
    void OpenFrom(const QString &suggestion);
    bool NameIsABackup() const;
    QString NameToSuggest() const;
    BoxAnswer Ask(const QString &text, const BoxStyle &style);

    Dependencies dependencies_;
    QString currentFileName_;
    QString loadedFileName_;
    std::optional<Failure> silentFailure_;
};

} // namespace ztv

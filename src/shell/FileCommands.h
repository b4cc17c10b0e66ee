#pragma once

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
        std::function<void()> showTable; // shows it on the tabs
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

    // Returns the failure that no box has shown; none since a later file command succeeded or showed a box.
    const std::optional<Failure> &SilentFailure() const { return silentFailure_; }

    // Opens the file of the command line. Deliberate: shows no box if it can't be opened, and a later "Save"
    // asks for a name.
    void OpenAtStart(const QString &name);

    void Open();

    // Asks about unsaved changes, if there are any, and saves them on Yes. Returns false on Cancel.
    bool OfferToSaveChanges(const QString &question);

    // Saves the file; asks for a name on SaveAs::AskedName or if there is no current one. A fault during
    // saving reaches the caller, unless the name was asked for: then the command ends silently.
    void Save(SaveAs which);

private:
    bool DownloadIsWanted();
    BoxAnswer Ask(const QString &text, BoxStyle style);

    Dependencies dependencies_;
    QString currentFileName_;
    std::optional<Failure> silentFailure_;
};

} // namespace ztv

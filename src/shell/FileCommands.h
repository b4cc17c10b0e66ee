#pragma once

#include "model/ClassZentrova.h"
#include "support/UserDialogs.h"

#include <QString>
#include <cstdint>
#include <functional>

// The settings-file commands of menu and toolbar: asks their questions, in order, and shows their outcomes.
class FileCommands {
public:
    enum class SaveAs { CurrentName = 0, AskedName = 1 };

    struct Surroundings {
        UserDialogs &dialogs;
        std::function<bool()> changesNeedSaving;
        std::function<bool()> portIsOpen;
        std::function<OpenOutcome(const QString &)> openFile;
        std::function<bool(const QString &)> saveFile; // true: not saved
        std::function<void()> updateCaption;
        std::function<void()> showTable; // on the tabs
    };

    explicit FileCommands(Surroundings surroundings) : surroundings_(std::move(surroundings)) {}

    // The file that is open; empty if none.
    const QString &CurrentFileName() const { return currentFileName_; }

    void Open();

    // Asks about unsaved changes, if there are any, and saves them on Yes. False: Cancel.
    bool LookAfterChanges(const QString &question);

    // Without a current name it is asked for as well. A fault in saving goes on to the caller, unless the
    // name was asked for: that ends the command quietly.
    void Save(SaveAs which);

private:
    bool DownloadIsWanted();
    BoxAnswer Ask(const QString &text, BoxStyle style);
    void Tell(const QString &text, BoxIcon icon);

    Surroundings surroundings_;
    QString currentFileName_;
};

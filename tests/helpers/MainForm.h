#pragma once

#include "link/LinkSession.h"
#include "model/ClassZentrova.h"
#include "shell/CommandLine.h"
#include "shell/FormMain.h"
#include "support/ApplicationTitle.h"
#include "support/SettingsStore.h"
#include "tests/helpers/Form.h"
#include "tests/helpers/RecordedHelp.h"
#include "tests/helpers/ScriptedDialogs.h"
#include "tests/helpers/TestPresets.h"

#include <QTemporaryDir>
#include <functional>
#include <gtest/gtest.h>
#include <memory>

namespace ztv {

// Runs the main form with test dependencies: settings, boxes, presets.
class MainFormTest : public testing::Test {
protected:
    MainFormTest() : previousConfiguration_(qgetenv("XDG_CONFIG_HOME")) {
        qputenv("XDG_CONFIG_HOME", configuration_.path().toLocal8Bit());
    }
    ~MainFormTest() override {
        form_.reset();
        qputenv("XDG_CONFIG_HOME", previousConfiguration_);
    }

    // Starts the program with this command line and shows its form.
    void Start(const QString &commandText = QString()) {
        form_ = std::make_unique<FormMain>(
            FormMain::Dependencies{.dialogs = dialogs_,
                                   .settings = settings_,
                                   .helpEngine = Engine(),
                                   .programFolder = presets_,
                                   .arguments = CommandLine::SplitArguments(commandText),
                                   .ctrlKeyIsDown = [this] { return ctrl_; },
                                   .registerFileType = [this] { ++registrations_; },
                                   .openUrl =
                                       [this](const QUrl &url) {
                                           opened_ = url;
                                           return browser_;
                                       },
                                   .startSysInfo = [this] { ++systemInformations_; },
                                   .backupFolder = backups_});
        form_->ShowAsStored();
    }

    Form Ui() const { return Form(*form_); }

    // The help's engine. Records the requests, unless a test overrides it.
    virtual HelpEngine &Engine() { return help_; }

    QTemporaryDir configuration_;
    QByteArray previousConfiguration_;
    ScriptedDialogs dialogs_;
    RecordedHelp help_;
    SettingsStore settings_{ApplicationTitle()};
    QString presets_ = ShippedPresetsFolder();
    bool ctrl_ = false;
    int registrations_ = 0;
    int systemInformations_ = 0;
    QUrl opened_;
    bool browser_ = true;
    QString backups_ = configuration_.filePath(QStringLiteral("Backups"));
    std::unique_ptr<FormMain> form_;
};

// Calls `work` with the next modal dialog once it is open.
void WhenDialogOpens(std::function<void(QWidget &)> work);

} // namespace ztv

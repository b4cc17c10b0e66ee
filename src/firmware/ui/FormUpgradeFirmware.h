#pragma once

#include "firmware/OneButtonUpgrade.h"
#include "firmware/UpgradeConsole.h"
#include "firmware/UpgradeReport.h"
#include "firmware/UpgradeVersions.h"
#include "help/ClassMyHtmlHelp.h"
#include "support/UserDialogs.h"

#include <QDialog>
#include <cstdint>
#include <functional>

class QAbstractButton;
class QGroupBox;
class QLabel;
class QLayout;

namespace ztv {

class FirmwareLine;
class NoticeLabel;
class StatusPanels;
class TransferBar;
class UpgradeBoxes;

// Replaces the sensor's firmware. Shows one button for the whole upgrade, which file it uses, and what became
// of the sensor. Ctrl and a click on the title show or hide a panel with a button for each step.
class FormUpgradeFirmware : public QDialog {
    Q_OBJECT

public:
    static constexpr std::int32_t HelpContextID = 1170;

    struct Dependencies {
        BootComm &bootComm; // the only one of the program
        LinkSession &link;
        ClassZentrova &zentrova;
        UserDialogs &dialogs;
        ClassMyHtmlHelp &help;
        QString programFolder;
        std::function<bool(const QString &command, const QString &fileName)> showInEditor;
        // Outlives the window, so that the version after an upgrade can be known when it opens again. Without
        // one the window has its own.
        UpgradeVersions *versions = nullptr;
    };

    explicit FormUpgradeFirmware(Dependencies dependencies, QWidget *parent = nullptr);

    // Called for every way to close the window. Does nothing while the upgrade runs.
    void done(int result) override;

    UpgradeConsole &Console() { return *console_; }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    struct Command;

    QWidget *BuildTitle();
    QLayout *BuildButtons();
    QLayout *BuildFirmwareLine();
    QLayout *BuildNotice();
    void BuildStatusBar();
    void LayOut(QWidget *title, QLayout *buttons, QLayout *firmware, QLayout *notice);
    void ShowDevice();
    void BuildExpertPanel();
    QAbstractButton *NewButton(const Command &command, std::function<void()> work);
    void ConnectConsole();
    void SetDesignHeight(int twips);
    void ShowNotice();
    void ShowRunning(bool running);
    void Upgrade();
    void RunApp();
    void StartSensor();
    void ChooseFile();
    void OpenHexFile();
    void SaveHexFile();

    Dependencies dependencies_;
    UpgradeConsole *console_;
    OneButtonUpgrade *upgrade_;
    UpgradeReport *report_;
    UpgradeBoxes *boxes_;
    QAbstractButton *commandUpgrade_ = nullptr;
    QAbstractButton *commandClose_ = nullptr;
    QAbstractButton *commandChooseFile_ = nullptr;
    QAbstractButton *commandStartSensor_ = nullptr;
    FirmwareLine *firmwareLine_ = nullptr;
    NoticeLabel *notice_ = nullptr;
    NoticeLabel *device_ = nullptr;
    QLabel *lblTitle_ = nullptr;
    QGroupBox *frame1_ = nullptr;
    TransferBar *transferBar_ = nullptr;
    StatusPanels *statusBar1_ = nullptr;
    int designHeight_ = 0; // twips
};

} // namespace ztv

#pragma once

#include "link/ConnectChoice.h"
#include "shell/StatusCells.h"

#include <QMainWindow>
#include <QString>
#include <QUrl>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

class QLineEdit;
class QTimer;

namespace ztv {

enum class StripAction;
class MainStatusBar;
struct DirectionFacts;
class BasicPage;
class BootComm;
class UpgradeVersions;
class ClassMyHtmlHelp;
class ClassZentrova;
class SensorBackup;
class EntryRules;
class FileCommands;
class HelpEngine;
class LeastSize;
class LinkNotices;
class LinkSession;
class MainCommands;
class MainStrip;
class SettingsStore;
class TabFrames;
class UserDialogs;
class ValueOverlay;
class WindowPlacement;
class WizardPage;
class frmWizard;

// The main form. It composes the program's parts, enables commands and routes them; the parts do the work.
class FormMain : public QMainWindow {
    Q_OBJECT
    Q_PROPERTY(short HelpContextID READ HelpContext)

public:
    struct Dependencies {
        UserDialogs &dialogs;
        SettingsStore &settings;
        HelpEngine &helpEngine;
        QString programFolder;
        std::vector<QString> arguments; // for CommandLine::Parse
        std::function<bool()> ctrlKeyIsDown;
        std::function<void()> registerFileType = [] {};                           // called once at each start
        std::function<bool(const QUrl &)> openUrl = [](auto &) { return false; }; // in the system's browser
        // Shows a file in a text editor, in `command` if that exists.
        std::function<bool(const QString &command, const QString &fileName)> showInEditor =
            [](auto &, auto &) { return false; };
        std::function<void()> startSysInfo = [] {}; // shows the user if it fails
        QString backupFolder = {};                  // for the sensors' values; empty: none are kept
    };

    // Runs the whole start-up except showing the window. Throws a Fault if the presets can't be read.
    explicit FormMain(Dependencies dependencies);
    ~FormMain() override;

    // Return the only parameter table and the only link of the program.
    ClassZentrova &Zentrova() { return *zentrova_; }
    LinkSession &Link() { return *link_; }
    ClassMyHtmlHelp &hHelp() { return *help_; }

    // Those of the link, which LinkSession describes.
    std::int16_t TimeoutCount() const;
    std::int16_t CrcErrorCount() const;
    std::uint8_t AddressingMode() const;
    std::int16_t CommPort() const;
    std::int16_t BaudRate() const;
    std::int16_t ParityStop() const;
    std::int16_t ModbusAddress() const;

    void SetMbaxp1CommProperties(std::int16_t port, std::int16_t baud, std::int16_t parityStop,
                                 std::int16_t timeoutMs);
    void GoOnline(ConnectPrompt prompt);
    void GoOffline();
    static QString MbaxpErrorDesc(std::int16_t code);

    // Returns -1 (true) if the Ctrl key is down at this moment, otherwise 0.
    std::int16_t CtrlKey() const { return dependencies_.ctrlKeyIsDown() ? -1 : 0; }

    // Returns the name of the open settings file; empty if none is open.
    const QString &CurrentFileName() const;

    // Return the visible tab and the help topic for it.
    std::int16_t CurrentTab() const;
    std::int16_t HelpContext() const;

    // Copies the parameter table onto the visible page.
    void UpdateDisplay();

    // Arranges the Basic tab for the sensor's output mode. In hyperbolic mode, writes the near distance.
    void ConfigureBasicTab();

    // Validates and writes the text of a box for the parameter in its property "Tag". Returns false, with the
    // text selected, after showing the user the reason.
    bool ValidateAndWriteTextBoxVal(QLineEdit &box);

    // Tells the wizard of the link, and the strip of what became of the wizard's values. Both last as long as
    // the wizard.
    void ConnectWizard(frmWizard &wizard);

    // Shows the window in the state in which the last run ended.
    void ShowAsStored();

protected:
    bool event(QEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    void changeEvent(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void BuildControls(bool withCheckout);
    void BuildPages();
    void BuildStrip(const std::function<QString(std::int16_t)> &deviceOfPort);
    void ObeyStrip(StripAction action);
    void BuildStatusBar(const std::function<QString(std::int16_t)> &deviceOfPort);
    void ObeyCell(StatusCell::Kind kind);
    void ShowChangedFile();
    void OpenFile();
    void OpenBackup();
    void OfferBackups();
    void SaveFile();
    void SaveFileAs();
    void AskToClearSettings(bool wanted);
    void BuildFileCommands();
    void OpenFileOfCommandLine(const QString &name);
    void ConnectCommands();
    void ConnectLink();
    void ConnectPages();
    bool LeaveEntry();
    void AfterEntry(const std::function<void()> &work);
    bool MayCloseNow();
    void CloseOnceSent();
    void ShowTab();
    void LayOut();
    void ShowLinkState(bool online);
    void ToggleOnline();
    void Reinitialise();
    void UpdateCaption();
    void ShowMakersPages();
    void ShowCommunications();
    void ShowSearch();
    void ShowTransmitDelay();
    void ShowUpgradeFirmware();
    void ShowWizard();
    void ShowAbout();
    DirectionFacts DirectionOf() const;
    ConnectChoice AskDirection();
    bool StoreSettings();
    void TellOfStore(const QString &what);

    Dependencies dependencies_;
    std::unique_ptr<ClassMyHtmlHelp> help_;
    std::unique_ptr<WindowPlacement> placement_;
    std::unique_ptr<LeastSize> leastSize_;
    std::unique_ptr<ClassZentrova> zentrova_;
    std::unique_ptr<LinkSession> link_;
    std::unique_ptr<LinkNotices> linkNotices_;
    std::unique_ptr<BootComm> bootComm_;
    std::unique_ptr<UpgradeVersions> upgradeVersions_;
    std::unique_ptr<SensorBackup> backup_;
    std::unique_ptr<FileCommands> fileCommands_;
    std::unique_ptr<MainCommands> commands_;
    BasicPage *basicPage_ = nullptr;
    WizardPage *wizardPage_ = nullptr;
    QTimer *timer1_ = nullptr;
    TabFrames *tabs_ = nullptr;
    std::unique_ptr<MainStrip> strip_;
    std::unique_ptr<MainStatusBar> statusBar_;
    std::unique_ptr<EntryRules> entryRules_;
    ValueOverlay *text1_ = nullptr;
    bool closesOnceSent_ = false; // the window closes once the waiting writes are sent and no dialog is open
};

} // namespace ztv

#include "shell/FormMain.h"

#include "chart/ui/BasicPage.h"
#include "firmware/BootComm.h"
#include "firmware/SerialBootLine.h"
#include "firmware/UpgradeVersions.h"
#include "firmware/ui/FormUpgradeFirmware.h"
#include "help/ClassMyHtmlHelp.h"
#include "link/DirectionText.h"
#include "link/LinkSession.h"
#include "link/SensorBackup.h"
#include "link/SerialPorts.h"
#include "link/StoredComm.h"
#include "link/ui/FormComms.h"
#include "link/ui/FormReadWrite.h"
#include "model/ClassZentrova.h"
#include "model/ParamDefines.h"
#include "setup/ui/FormTransmitDelay.h"
#include "setup/ui/frmWizard.h"
#include "shell/AboutContents.h"
#include "shell/Caption.h"
#include "shell/CommandLine.h"
#include "shell/FileCommands.h"
#include "shell/FormAbout.h"
#include "shell/LeastSize.h"
#include "shell/LinkNotices.h"
#include "shell/MainCommands.h"
#include "shell/MainStatusBar.h"
#include "shell/MainStrip.h"
#include "shell/MakerAddress.h"
#include "shell/TabFrames.h"
#include "shell/WindowPlacement.h"
#include "support/ApplicationTitle.h"
#include "support/SettingsStore.h"
#include "support/UserDialogs.h"
#include "tabs/EntryRules.h"
#include "tabs/ui/AdvancedPage.h"
#include "tabs/ui/CheckoutPage.h"
#include "tabs/ui/DistancePage.h"
#include "tabs/ui/TextBoxEntry.h"
#include "tabs/ui/ValueOverlay.h"
#include "tabs/ui/WizardPage.h"
#include "widgets/Controls.h"
#include "widgets/Picture.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDir>
#include <QLayout>
#include <QMenu>
#include <QTimer>
#include <algorithm>
#include <map>
#include <utility>

namespace ztv {

namespace {

constexpr std::int32_t troubleshootingTopic = 1300;

} // namespace

FormMain::FormMain(Dependencies dependencies)
    : dependencies_(std::move(dependencies)),
      help_(std::make_unique<ClassMyHtmlHelp>(dependencies_.helpEngine, dependencies_.dialogs)),
      placement_(std::make_unique<WindowPlacement>(*this, dependencies_.settings)) {
    Controls::Named(this, "FormMain");
    setWindowTitle(ApplicationTitle());
    setWindowIcon(IconNamed(QStringLiteral("ztvlink")));
    help_->CHMFile(QDir::toNativeSeparators(dependencies_.programFolder + QStringLiteral("/ZTV.chm")));

    // Parses the command line before it reads any setting, so that the settings can be cleared first. Creates
    // the model before it sets up the link.
    const CommandLine::Options options = CommandLine::Parse(dependencies_.arguments, dependencies_.dialogs);
    AskToClearSettings(CtrlKey() != 0 || options.ClearRegistry);
    const CommSettings comm = ReadCommSettings(dependencies_.settings);
    const QSize least = Controls::FromTwips(0, 0, TabFrames::LeastWidth, TabFrames::LeastHeight).size();
    setMinimumSize(least);
    placement_->Restore();
    leastSize_ = std::make_unique<LeastSize>(*this, least);
    zentrova_ = std::make_unique<ClassZentrova>(dependencies_.programFolder);
    const auto deviceOfPort = [this](std::int16_t number) {
        return SerialPorts::DeviceOfPort(dependencies_.settings, number);
    };
    link_ = std::make_unique<LinkSession>(
        *zentrova_, LinkSession::Dependencies{.deviceOfPort = deviceOfPort,
                                              .askDirection = [this] { return AskDirection(); }});
    linkNotices_ = std::make_unique<LinkNotices>(*link_, dependencies_.dialogs);
    backup_ = std::make_unique<SensorBackup>(*link_, *zentrova_, BackupFiles(dependencies_.backupFolder));
    bootComm_ = std::make_unique<BootComm>(SerialBootLine::Opener(deviceOfPort), &link_->Mbaxp1().Tap());
    upgradeVersions_ = std::make_unique<UpgradeVersions>(*link_, *zentrova_);
    link_->Comm(comm);
    SetMbaxp1CommProperties(comm.port, comm.baud, comm.parityStop, 0);

    BuildFileCommands();
    dependencies_.registerFileType();
    OpenFileOfCommandLine(options.CommandLineFile);

    BuildControls(options.CheckoutEnabled);
    BuildPages();
    BuildStrip(deviceOfPort);
    ConnectCommands();
    BuildStatusBar(deviceOfPort);
    ConnectLink();
    ConnectPages();
    ShowLinkState(false);
    tabs_->CurrentPage().ShowState(link_->State());
    LayOut();
    tabs_->Colour();
    timer1_->start(); // last: its tick reads the table
    ConfigureBasicTab();
    UpdateDisplay();
}

// Destroys the pages before the table that they show. Hides first, so that focus-out handlers run while
// everything still exists.
FormMain::~FormMain() {
    hide();
    delete takeCentralWidget();
}

std::int16_t FormMain::TimeoutCount() const {
    return link_->TimeoutCount();
}

std::int16_t FormMain::CrcErrorCount() const {
    return link_->CrcErrorCount();
}

std::uint8_t FormMain::AddressingMode() const {
    return link_->AddressingMode();
}

std::int16_t FormMain::CommPort() const {
    return link_->CommPort();
}

std::int16_t FormMain::BaudRate() const {
    return link_->BaudRate();
}

std::int16_t FormMain::ParityStop() const {
    return link_->ParityStop();
}

std::int16_t FormMain::ModbusAddress() const {
    return link_->ModbusAddress();
}

void FormMain::GoOnline(ConnectPrompt prompt) {
    link_->GoOnline(prompt);
}

void FormMain::GoOffline() {
    link_->GoOffline();
}

QString FormMain::MbaxpErrorDesc(std::int16_t code) {
    return ztv::MbaxpErrorDesc(LinkStatus{code});
}

const QString &FormMain::CurrentFileName() const {
    return fileCommands_->CurrentFileName();
}

std::int16_t FormMain::CurrentTab() const {
    return tabs_->CurrentTab();
}

std::int16_t FormMain::HelpContext() const {
    return tabs_->HelpContext();
}

void FormMain::ShowAsStored() {
    placement_->Show();
}

void FormMain::SetMbaxp1CommProperties(std::int16_t port, std::int16_t baud, std::int16_t parityStop,
                                       std::int16_t timeoutMs) {
    link_->SetMbaxp1CommProperties(port, baud, parityStop, timeoutMs);
}

void FormMain::AskToClearSettings(bool wanted) {
    if (wanted &&
        Confirm(dependencies_.dialogs,
                QStringLiteral("Clear all ") + ApplicationTitle() + QStringLiteral(" Registry Settings?")) &&
        !dependencies_.settings.Clear()) {
        TellOfStore(QStringLiteral("The settings couldn't be cleared. They are in"));
    }
}

void FormMain::TellOfStore(const QString &what) {
    Warn(dependencies_.dialogs, QStringLiteral("%1\n%2").arg(what, dependencies_.settings.Place()));
}

void FormMain::BuildFileCommands() {
    fileCommands_ = std::make_unique<FileCommands>(FileCommands::Dependencies{
        .dialogs = dependencies_.dialogs,
        .changesNeedSaving = [this] { return zentrova_->FileChangesNeedSaving(); },
        .portIsOpen = [this] { return link_->PortIsOpen(); },
        .openFile =
            [this](const QString &name) {
                backup_->Spare(name);
                return zentrova_->OpenFile(name);
            },
        .saveFile = [this](const QString &name) { return zentrova_->SaveFile(name); },
        .updateCaption = [this] { UpdateCaption(); },
        .showTable =
            [this] {
                ConfigureBasicTab();
                UpdateDisplay(); // of any visible tab
            },
        .backups = backup_->Files()});
}

void FormMain::OpenFileOfCommandLine(const QString &name) {
    if (!name.isEmpty()) {
        fileCommands_->OpenAtStart(name);
    }
}

void FormMain::BuildControls(bool withCheckout) {
    auto *central = new QWidget(this);
    setCentralWidget(central);
    commands_ = std::make_unique<MainCommands>(*this);
    tabs_ = new TabFrames(*central, withCheckout);
}

void FormMain::BuildPages() {
    QWidget *central = centralWidget();
    entryRules_ = std::make_unique<EntryRules>(*zentrova_, dependencies_.dialogs);
    text1_ = new ValueOverlay(*entryRules_, central);
    basicPage_ = new BasicPage(*zentrova_, *text1_, central);
    auto *advanced =
        new AdvancedPage(*zentrova_, *entryRules_, dependencies_.dialogs, *help_, *text1_, central);
    connect(advanced, &AdvancedPage::Rebuilt, this, &FormMain::UpdateDisplay);
    wizardPage_ = new WizardPage(central);
    constexpr std::size_t manualOutput = 8;
    auto *checkout = new CheckoutPage(*zentrova_, basicPage_->ValueBox(manualOutput),
                                      BasicPage::ValueTag(manualOutput), central);
    tabs_->SetPage(Tab::Basic, basicPage_);
    tabs_->SetPage(Tab::Advanced, advanced);
    tabs_->SetPage(Tab::Wizard, wizardPage_);
    tabs_->SetPage(Tab::Distance, new DistancePage(*zentrova_, central));
    tabs_->SetPage(Tab::Checkout, checkout);
}

// Built after the pages, so that Tab reaches its buttons after theirs.
void FormMain::BuildStrip(const std::function<QString(std::int16_t)> &deviceOfPort) {
    strip_ = std::make_unique<MainStrip>(*centralWidget(), *tabs_,
                                         MainStrip::Dependencies{.link = *link_,
                                                                 .zentrova = *zentrova_,
                                                                 .files = *fileCommands_,
                                                                 .deviceOfPort = deviceOfPort,
                                                                 .backup = *backup_});
    connect(strip_.get(), &MainStrip::Pressed, this, &FormMain::ObeyStrip);
}

void FormMain::ObeyStrip(StripAction action) {
    switch (action) {
    case StripAction::Online:
        GoOnline(ConnectPrompt::Ask);
        break;
    case StripAction::GoOffline:
        GoOffline();
        break;
    case StripAction::Communications:
        ShowCommunications();
        break;
    case StripAction::Search:
        GoOffline();
        ShowSearch();
        break;
    case StripAction::StartWizard:
        AfterEntry([this] { ShowWizard(); });
        break;
    case StripAction::OpenFile:
        OpenFile();
        break;
    case StripAction::SaveAs:
        AfterEntry([this] { SaveFileAs(); });
        break;
    case StripAction::Help:
        help_->HHDisplayTopicID(winId(), troubleshootingTopic);
        break;
    default:
        break;
    }
}

void FormMain::OpenFile() {
    fileCommands_->Open();
    ShowChangedFile();
}

void FormMain::OpenBackup() {
    fileCommands_->OpenBackup();
    ShowChangedFile();
}

// Looks when the menu opens, since another run of the program may have made the first backup.
void FormMain::OfferBackups() {
    commands_->Menu("mnuFileOpenBackup").setEnabled(backup_->Files().HasAny());
}

void FormMain::SaveFile() {
    fileCommands_->Save(FileCommands::SaveAs::CurrentName);
    ShowChangedFile();
}

void FormMain::SaveFileAs() {
    fileCommands_->Save(FileCommands::SaveAs::AskedName);
    ShowChangedFile();
}

void FormMain::ShowChangedFile() {
    strip_->Update();
    statusBar_->Update();
}

void FormMain::BuildStatusBar(const std::function<QString(std::int16_t)> &deviceOfPort) {
    statusBar_ = std::make_unique<MainStatusBar>(
        *this, *commands_, StatusWatch::Dependencies{*link_, *zentrova_, *fileCommands_, deviceOfPort});
    connect(statusBar_.get(), &MainStatusBar::FileChangesTurned, strip_.get(), &MainStrip::Update);
    connect(statusBar_.get(), &MainStatusBar::Pressed, this,
            [this](StatusCell::Kind kind) { AfterEntry([this, kind] { ObeyCell(kind); }); });
}

void FormMain::ObeyCell(StatusCell::Kind kind) {
    using Kind = StatusCell::Kind;
    const std::int16_t outputTab = tabs_->IsShown(Tab::Checkout) ? Tab::Checkout : Tab::Basic;
    const std::map<Kind, std::function<void()>> works = {
        {Kind::NotSaved, [this] { statusBar_->ListUnsaved(); }},
        {Kind::OutputForced, [this, outputTab] { tabs_->Show(outputTab); }},
        {Kind::Sensor, [this] { ShowAbout(); }},
        {Kind::Echo, [this] { tabs_->Show(Tab::Distance); }},
        {Kind::File, [this] { SaveFileAs(); }}};
    const auto found = works.find(kind);
    found == works.end() ? ShowCommunications() : found->second(); // the others are facts of the line
}

void FormMain::ConnectCommands() {
    const auto goOnline = [this] { GoOnline(ConnectPrompt::Ask); };
    const auto goOffline = [this] { GoOffline(); };
    const auto openFile = [this] { OpenFile(); };
    const auto afterEntry = [this](const std::function<void()> &work) {
        return [this, work] { AfterEntry(work); };
    };
    const auto saveFile = afterEntry([this] { SaveFile(); });
    const auto saveFileAs = afterEntry([this] { SaveFileAs(); });
    const auto saveInSensor =
        afterEntry([this] { zentrova_->ParamValue(ParamDefines::SaveCommand, ParamDefines::StoreSettings); });
    const auto exit = [this] { close(); };
    const auto showHelp = [this] { help_->HHDisplayContents(winId()); };
    const std::pair<QAction &, std::function<void()>> works[] = {
        {commands_->Menu("mnuFileOpen"), openFile},
        {commands_->Menu("mnuFileSave(0)"), saveFile},
        {commands_->Menu("mnuFileSave(1)"), saveFileAs},
        {commands_->Menu("mnuFileExit"), exit},
        {commands_->Menu("mnuFileOpenBackup"), [this] { OpenBackup(); }},
        {commands_->Menu("mnuCommunications"), [this] { ShowCommunications(); }},
        {commands_->Menu("mnuOnline"), [this] { ToggleOnline(); }},
        {commands_->Menu("mnuReinit"), [this] { Reinitialise(); }},
        {commands_->Menu("mnuTransmitDelayCalc"), [this] { ShowTransmitDelay(); }},
        {commands_->Menu("mnuOptionsUpgradeFirmware"), [this] { ShowUpgradeFirmware(); }},
        {commands_->Menu("mnuZtvHelp"), showHelp},
        {commands_->Menu("mnuHalvernWeb"), [this] { ShowMakersPages(); }},
        {commands_->Menu("mnuHelpAbout"), [this] { ShowAbout(); }},
        {commands_->Button("Online"), goOnline},
        {commands_->Button("Offline"), goOffline},
        {commands_->Button("Open File"), openFile},
        {commands_->Button("Save File"), saveFile},
        {commands_->Button("Save ZTV"), saveInSensor},
        {commands_->Button("Help"), showHelp},
        {commands_->Button("Exit"), exit},
    };
    for (const auto &[action, work] : works) {
        commands_->SetHandler(action, work);
    }
    commands_->SetHandler(commands_->FullScreen(), [this] { placement_->ToggleFullScreen(); });
    OfferBackups();
    connect(findChild<QMenu *>(QStringLiteral("mnuFile")), &QMenu::aboutToShow, this,
            &FormMain::OfferBackups);
    connect(backup_.get(), &SensorBackup::Ended, this, &FormMain::OfferBackups);
    commands_->ExplainDisabled();
    commands_->Menu("mnuHalvernWeb").setText(MakerCaption(dependencies_.settings));
}

void FormMain::ConnectLink() {
    connect(link_.get(), &LinkSession::OnlineChanged, this, &FormMain::ShowLinkState);
    connect(link_.get(), &LinkSession::FirstReadComplete, this, &FormMain::ConfigureBasicTab);
    connect(link_.get(), &LinkSession::ValueStateChanged, this,
            [this](ValueState state) { tabs_->CurrentPage().ShowState(state); });
    connect(link_.get(), &LinkSession::WriteFailureMarked, this,
            [this] { tabs_->CurrentPage().ShowFailedWrites(); });
    connect(link_.get(), &LinkSession::TableRefreshed, this, &FormMain::UpdateDisplay);
}

void FormMain::ConnectPages() {
    timer1_ = Controls::Named(new QTimer(this), "Timer1");
    timer1_->setInterval(BasicGraph::TickMilliseconds);
    timer1_->setTimerType(Qt::PreciseTimer);
    connect(timer1_, &QTimer::timeout, basicPage_, &BasicPage::UpdateGraph);
    connect(basicPage_, &BasicPage::ValueBoxLeft, this, &FormMain::UpdateDisplay);
    connect(tabs_, &TabFrames::Leaving, text1_, &ValueOverlay::Close);
    connect(tabs_, &TabFrames::Changed, this, &FormMain::ShowTab);
    connect(wizardPage_, &WizardPage::StartWizard, this, &FormMain::ShowWizard);
    connect(text1_, &ValueOverlay::Left, this, [this] {
        UpdateDisplay();
        basicPage_->PositionRelayMarkers();
    });
}

// Writes the text or choice being edited, as if the user left it. Returns false if it was rejected; then a
// command that would lose it must not run.
bool FormMain::LeaveEntry() {
    if (!text1_->Leave()) {
        return false;
    }
    tabs_->CurrentPage().LeaveEntry();
    return true;
}

// Runs `work` unless the text being typed is rejected.
void FormMain::AfterEntry(const std::function<void()> &work) {
    if (LeaveEntry()) {
        work();
    }
}

void FormMain::ConfigureBasicTab() {
    basicPage_->ConfigureBasicTab();
}

void FormMain::ShowLinkState(bool online) {
    commands_->ShowLinkState(online);
    wizardPage_->EnableStart(online);
}

void FormMain::ToggleOnline() {
    if (commands_->IsOnline()) {
        GoOffline();
    } else {
        GoOnline(ConnectPrompt::Ask);
    }
}

void FormMain::Reinitialise() {
    if (Confirm(dependencies_.dialogs,
                QStringLiteral(
                    "Are you sure? This will reset all parameters back to the factory default values."))) {
        zentrova_->ParamValue(ParamDefines::ReinitCommand, ParamDefines::FactoryDefaults);
    }
}

void FormMain::UpdateCaption() {
    ztv::UpdateCaption(*this, CurrentFileName());
}

void FormMain::ShowMakersPages() {
    const QUrl address = MakerAddress(dependencies_.settings);
    if (!dependencies_.openUrl(address)) {
        Warn(dependencies_.dialogs, QStringLiteral("The web browser couldn't be started. The address is\n%1")
                                        .arg(address.toString()));
    }
}

void FormMain::ShowCommunications() {
    FormComms(*link_, *zentrova_, dependencies_.dialogs, dependencies_.settings, *help_, this).exec();
    statusBar_->Update();
}

void FormMain::ShowSearch() {
    FormComms form(*link_, *zentrova_, dependencies_.dialogs, dependencies_.settings, *help_, this);
    QMetaObject::invokeMethod(&form, &FormComms::Search, Qt::QueuedConnection);
    form.exec();
    statusBar_->Update();
}

void FormMain::ShowTransmitDelay() {
    FormTransmitDelay(*zentrova_, *link_, dependencies_.dialogs, *help_, this).exec();
}

void FormMain::ShowUpgradeFirmware() {
    FormUpgradeFirmware({.bootComm = *bootComm_,
                         .link = *link_,
                         .zentrova = *zentrova_,
                         .dialogs = dependencies_.dialogs,
                         .help = *help_,
                         .programFolder = dependencies_.programFolder,
                         .showInEditor = dependencies_.showInEditor,
                         .versions = upgradeVersions_.get()},
                        this)
        .exec();
}

void FormMain::ShowWizard() {
    frmWizard wizard(*zentrova_, dependencies_.dialogs, *help_, this);
    ConnectWizard(wizard);
    wizard.exec();
}

void FormMain::ConnectWizard(frmWizard &wizard) {
    strip_->Wizard().Forget();
    connect(&wizard, &frmWizard::Asked, &strip_->Wizard(), &WizardOutcome::Ask);
    connect(link_.get(), &LinkSession::ValueStateChanged, &wizard, &frmWizard::ShowState);
    connect(&link_->Mbaxp1(), &Mbaxp::TransactionDone, &wizard, [&wizard](LinkTransaction transaction) {
        if (transaction == LinkTransaction::Poll) {
            wizard.TakePoll();
        }
    });
    wizard.ShowState(link_->State());
}

void FormMain::ShowAbout() {
    FormAbout(AboutContents(*zentrova_, dependencies_.settings),
              {.showMakersPages = [this] { ShowMakersPages(); },
               .showMasterAbout =
                   [this] {
                       dependencies_.dialogs.OwnedMessageBox(
                           Mbaxp::AboutText(), {.icon = BoxIcon::Information, .buttons = BoxButtons::Ok},
                           ApplicationTitle());
                   },
               .startSysInfo = dependencies_.startSysInfo,
               .addCheckoutTab = [this] { tabs_->AddCheckout(); }},
              *help_, this)
        .exec();
}

DirectionFacts FormMain::DirectionOf() const {
    DirectionFacts facts;
    facts.values = static_cast<std::int16_t>(zentrova_->ParamCount() - 1);
    if (link_->AgeOfValues() && !zentrova_->HoldsSavedEdits()) {
        facts.sensor = QString::number(zentrova_->ParamValue(ParamDefines::SerialNumber));
    }
    facts.file = fileCommands_->LoadedFileName();
    for (const std::int16_t tag : zentrova_->EditedRows()) {
        facts.edits.append(zentrova_->ParamName(tag).trimmed());
    }
    if (const auto serialNumber = link_->Sensor().Value(ParamDefines::SerialNumber);
        serialNumber && !dependencies_.backupFolder.isEmpty()) {
        facts.backupFor = QString::number(*serialNumber);
    }
    return facts;
}

ConnectChoice FormMain::AskDirection() {
    FormReadWrite form(*help_, this);
    form.Explain(TextOf(DirectionOf()));
    form.exec();
    return form.Choice();
}

void FormMain::ShowTab() {
    if (CurrentTab() == Tab::Basic) {
        timer1_->start();
    } else {
        timer1_->stop();
    }
    tabs_->CurrentPage().ShowState(link_->State());
    tabs_->CurrentPage().Entered();
    ConfigureBasicTab();
    UpdateDisplay();
}

void FormMain::UpdateDisplay() {
    tabs_->CurrentPage().UpdateDisplay();
}

bool FormMain::ValidateAndWriteTextBoxVal(QLineEdit &box) {
    return ztv::ValidateAndWriteTextBoxVal(box, *entryRules_);
}

void FormMain::resizeEvent(QResizeEvent *event) {
    QMainWindow::resizeEvent(event);
    if (commands_) {
        commands_->SaveRoom(height() < Controls::FromTwips(0, 0, 0, TabFrames::LeastHeight).height());
    }
}

void FormMain::changeEvent(QEvent *event) {
    QMainWindow::changeEvent(event);
    const bool otherColours = event->type() == QEvent::StyleChange || event->type() == QEvent::PaletteChange;
    if (otherColours && tabs_ != nullptr) {
        // From the event loop: the strip, whose colour the pages take, gets the new palette after the form.
        QMetaObject::invokeMethod(
            this,
            [this] {
                tabs_->Colour();
                if (strip_ != nullptr) {
                    strip_->Colour();
                }
            },
            Qt::QueuedConnection);
    }
}

// Measures the form's own bars once: a dock or a bar that is added later makes the pages smaller.
void FormMain::LayOut() {
    layout()->activate();
    tabs_->LayOutBeside(size() - centralWidget()->size());
}

// Returns false if the text being typed was rejected, or if the window closes by itself once the waiting
// writes are sent. Further requests to close meanwhile have no effect.
bool FormMain::MayCloseNow() {
    if (!LeaveEntry()) {
        return false;
    }
    if (!zentrova_->WritesWait()) {
        closesOnceSent_ = false;
        return true;
    }
    if (!std::exchange(closesOnceSent_, true)) {
        CloseOnceSent();
    }
    return false;
}

// The program can't end behind a dialog, which may have been opened since the request to close. The window
// then closes after the dialog.
void FormMain::CloseOnceSent() {
    const auto closeIfFree = [this] {
        if (QApplication::activeModalWidget() == nullptr && std::exchange(closesOnceSent_, false)) {
            close();
        }
    };
    zentrova_->WhenWritesAreSent(
        [this, closeIfFree] { QMetaObject::invokeMethod(this, closeIfFree, Qt::QueuedConnection); });
}

bool FormMain::event(QEvent *event) {
    if (event->type() == QEvent::WindowUnblocked && closesOnceSent_) {
        CloseOnceSent();
    }
    return QMainWindow::event(event);
}

void FormMain::closeEvent(QCloseEvent *event) {
    if (!MayCloseNow()) {
        event->ignore();
        return;
    }
    // Deliberate: the program closes after "Yes" even if the save failed.
    if (!fileCommands_->OfferToSaveChanges(
            QStringLiteral("The currently open file has been changed. Do you want to save the changes?"))) {
        event->ignore();
        return;
    }
    // Shows no box at the end of the session, which it would delay.
    if (!StoreSettings() && !qApp->isSavingSession()) {
        TellOfStore(QStringLiteral("The settings couldn't be stored in"));
    }
    event->accept();
}

bool FormMain::StoreSettings() {
    const bool stored = WriteCommSettings(dependencies_.settings, link_->Comm());
    return placement_->Store() && stored;
}

} // namespace ztv

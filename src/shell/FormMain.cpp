#include "shell/FormMain.h"

#include "firmware/SerialBootLine.h"
#include "firmware/ui/FormUpgradeFirmware.h"
#include "link/SerialPorts.h"
#include "link/ui/FormComms.h"
#include "link/ui/FormReadWrite.h"
#include "model/ParamDefines.h"
#include "setup/ui/FormTransmitDelay.h"
#include "setup/ui/frmWizard.h"
#include "shell/AboutContents.h"
#include "shell/MakerAddress.h"
#include "shell/UnseenDialogs.h"
#include "support/ApplicationTitle.h"
#include "support/Fault.h"
#include "support/PathFunctions.h"
#include "tabs/ui/AdvancedPage.h"
#include "tabs/ui/BasicPage.h"
#include "tabs/ui/CheckoutPage.h"
#include "tabs/ui/DistancePage.h"
#include "tabs/ui/TextBoxEntry.h"
#include "tabs/ui/WizardPage.h"
#include "ui/Controls.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDir>
#include <QPixmap>
#include <QResizeEvent>
#include <QScreen>
#include <QStatusBar>
#include <QTabBar>
#include <QTimer>

namespace {

// Twips.
constexpr int leastHeight = 8940;
constexpr int leastWidth = 10200;
constexpr int stripLeft = 120;
constexpr int stripTop = 150;
constexpr int frameLeftInStrip = 250;
constexpr int frameTopInStrip = 325;
constexpr int tabFrame = 5; // pixels of a tab above and below its caption

constexpr int titleBarAllowance = 32; // pixels of the window's title that must stay within reach

int ToTwips(int pixels) {
    return pixels * Controls::TwipsPerPixel;
}

} // namespace

FormMain::FormMain(Surroundings surroundings)
    : surroundings_(std::move(surroundings)),
      help_(surroundings_.helpEngine, surroundings_.dialogs) {
    Controls::Named(this, "FormMain");
    setWindowTitle(ApplicationTitle());
    setWindowIcon(QIcon(QStringLiteral(":/icons/ztvlink.svg")));
    help_.CHMFile(QDir::toNativeSeparators(surroundings_.programFolder + QStringLiteral("/ZTV.chm")));

    // The command line comes before any setting is read, so that the settings can be cleared first; the
    // model exists before the link is set up.
    options_ = CommandLine::Parse(surroundings_.commandText, surroundings_.dialogs);
    AskToClearSettings(CtrlKey() != 0 || options_.ClearRegistry);
    const CommSettings comm = ReadCommSettings(surroundings_.settings);
    PlaceWindow();
    zentrova_ = std::make_unique<ClassZentrova>(surroundings_.programFolder);
    const auto deviceOfPort = [this](std::int16_t number) {
        return SerialPorts::DeviceOfPort(surroundings_.settings, number);
    };
    link_ = std::make_unique<LinkSession>(
        *zentrova_, LinkSession::Surroundings{.dialogs = surroundings_.dialogs,
                                              .deviceOfPort = deviceOfPort,
                                              .askDirection = [this] { return AskDirection(); }});
    bootComm_ = std::make_unique<BootComm>(SerialBootLine::Opener(deviceOfPort));
    link_->CommPort(comm.commPort);
    link_->BaudRate(comm.baudRate);
    link_->ParityStop(comm.parityStop);
    link_->ModbusAddress(comm.modbusAddress);
    SetMbaxp1CommProperties(comm.commPort, comm.baudRate, comm.parityStop, 0);

    BuildFileCommands();
    surroundings_.registerFileType();
    OpenFileOfCommandLine();

    BuildControls();
    BuildPages();
    ConnectCommands();
    ConnectLink();
    ConnectPages();
    ShowLinkState(false);
    LayOut();
    ColourPages();
    timer1_->start(); // last: its tick reads the table
    ConfigureBasicTab();
    UpdateDisplay();
}

// The pages go before the table that they show; what has the focus loses it while all is there.
FormMain::~FormMain() {
    hide();
    delete takeCentralWidget();
}

void FormMain::SetMbaxp1CommProperties(std::int16_t port, std::int16_t baud, std::int16_t parityStop,
                                       std::int16_t timeoutMs) {
    link_->SetMbaxp1CommProperties(port, baud, parityStop, timeoutMs);
}

BoxAnswer FormMain::Ask(const QString &question) {
    return surroundings_.dialogs.OwnedMessageBox(
        question, {.icon = BoxIcon::Question, .buttons = BoxButtons::YesNo}, ApplicationTitle());
}

void FormMain::AskToClearSettings(bool wanted) {
    if (wanted &&
        Ask(QStringLiteral("Clear all ") + ApplicationTitle() + QStringLiteral(" Registry Settings?")) ==
            BoxAnswer::Yes &&
        !surroundings_.settings.Clear()) {
        TellOfStore(QStringLiteral("The settings couldn't be cleared. They are in"));
    }
}

void FormMain::TellOfStore(const QString &what) {
    surroundings_.dialogs.OwnedMessageBox(QStringLiteral("%1\n%2").arg(what, surroundings_.settings.Place()),
                                          {.icon = BoxIcon::Exclamation, .buttons = BoxButtons::Ok},
                                          ApplicationTitle());
}

// Where the last run left the window, or where it can be reached if that is off every screen by now.
void FormMain::PlaceWindow() {
    setMinimumSize(Controls::FromTwips(0, 0, leastWidth, leastHeight).size());
    const WindowPlace place = ReadWindowPlace(surroundings_.settings);
    const QRect wanted = Controls::FromTwips(place.left, place.top, place.width, place.height);
    QRect desktop;
    for (const QScreen *screen : QGuiApplication::screens()) {
        desktop |= screen->geometry();
    }
    resize(wanted.size().boundedTo(2 * desktop.size())); // none can be painted that is far larger
    const QRect title(wanted.topLeft(), QSize(wanted.width(), titleBarAllowance));
    bool withinReach = false;
    for (const QScreen *screen : QGuiApplication::screens()) {
        withinReach = withinReach || screen->availableGeometry().intersects(title);
    }
    move(withinReach ? wanted.topLeft() : QPoint(0, 0));
    storedWindowState_ = ReadWindowState(surroundings_.settings);
}

void FormMain::ShowAsStored() {
    switch (storedWindowState_) {
    case WindowState::Minimised:
        showMinimized();
        break;
    case WindowState::Maximised:
        showMaximized();
        break;
    case WindowState::Normal:
        show();
        break;
    }
}

void FormMain::BuildFileCommands() {
    fileCommands_ = std::make_unique<FileCommands>(FileCommands::Surroundings{
        .dialogs = surroundings_.dialogs,
        .changesNeedSaving = [this] { return zentrova_->FileChangesNeedSaving(); },
        .portIsOpen = [this] { return link_->PortIsOpen(); },
        .openFile = [this](const QString &name) { return zentrova_->OpenFile(name, surroundings_.dialogs); },
        .saveFile = [this](const QString &name) { return zentrova_->SaveFile(name); },
        .updateCaption = [this] { UpdateCaption(); },
        .showTable =
            [this] {
                ConfigureBasicTab();
                UpdateDisplay(); // whichever tab shows
            }});
}

// A file that can't be opened at the start shows nothing, and a later "Save" asks for a name.
void FormMain::OpenFileOfCommandLine() {
    if (!options_.CommandLineFile.isEmpty()) {
        UnseenDialogs unseen;
        zentrova_->OpenFile(options_.CommandLineFile, unseen);
    }
}

void FormMain::BuildControls() {
    auto *central = new QWidget(this);
    setCentralWidget(central);
    commands_ = std::make_unique<MainCommands>(*this);

    Controls::Named(statusBar(), "StatusBar1");
    statusText_ = Controls::Named(new QLabel(QStringLiteral("Communication Status: Offline")), "StatusText");
    statusBar()->addWidget(statusText_, 1);

    tabStrip1_ = Controls::Named(new QTabWidget(central), "TabStrip1");
    tabStrip1_->setUsesScrollButtons(false);
    // A click on a tab takes the focus too: what is being edited is checked before the page goes.
    tabStrip1_->tabBar()->setFocusPolicy(Qt::StrongFocus);
    Controls::IgnoreWheel(*tabStrip1_->tabBar()); // a tab that is only passed may write
    // The pages lie over the strip, close below its tabs.
    const int tabHeight = Controls::FromTwips(0, 0, 0, frameTopInStrip).height();
    tabStrip1_->tabBar()->setFixedHeight(tabHeight);
    tabStrip1_->tabBar()->setFont(
        Controls::FittingFont(font(), {{.text = {}, .width = 0, .height = tabHeight - tabFrame}}));
    for (const Tab::Description &tab : Tab::Table) {
        if (tab.number != Tab::Checkout || options_.CheckoutEnabled) {
            AddTab(tab, tab.caption);
        }
    }
}

void FormMain::AddTab(const Tab::Description &tab, const char *caption) {
    tabStrip1_->addTab(Controls::Named(new QWidget, tab.key), QString::fromLatin1(caption));
}

void FormMain::BuildPages() {
    QWidget *central = centralWidget();
    entryRules_ = std::make_unique<EntryRules>(*zentrova_, surroundings_.dialogs);
    text1_ = new ValueOverlay(*entryRules_, central);
    basicPage_ = new BasicPage(*zentrova_, *text1_, central);
    tabFrames_[Tab::Basic] = basicPage_;
    auto *advanced =
        new AdvancedPage(*zentrova_, *entryRules_, surroundings_.dialogs, help_, *text1_, central);
    connect(advanced, &AdvancedPage::Rebuilt, this, &FormMain::UpdateDisplay);
    tabFrames_[Tab::Advanced] = advanced;
    wizardPage_ = new WizardPage(central);
    tabFrames_[Tab::Wizard] = wizardPage_;
    tabFrames_[Tab::Distance] = new DistancePage(*zentrova_, central);
    auto *checkout = new CheckoutPage(*zentrova_, basicPage_->ValueBox(8), central);
    connect(checkout, &CheckoutPage::Finished, this, [this] {
        if (currentTab_ != Tab::Checkout) { // which was left before the output's mode was written
            ConfigureBasicTab();
        }
    });
    tabFrames_[Tab::Checkout] = checkout;
    for (const Tab::Description &tab : Tab::Table) {
        TabPage *page = tabFrames_[static_cast<std::size_t>(tab.number)];
        page->move(
            Controls::FromTwips(stripLeft + frameLeftInStrip, stripTop + frameTopInStrip, 0, 0).topLeft());
        page->setVisible(tab.number == currentTab_);
    }
    tabStrip1_->lower();
}

void FormMain::ConnectCommands() {
    commands_->Menu("mnuOnline").setCheckable(true);
    const auto goOnline = [this] { GoOnline(0); };
    const auto goOffline = [this] { GoOffline(); };
    const auto openFile = [this] { fileCommands_->Open(); };
    const auto saveFile = [this] { fileCommands_->Save(FileCommands::SaveAs::CurrentName); };
    const auto saveFileAs = [this] { fileCommands_->Save(FileCommands::SaveAs::AskedName); };
    const auto saveInSensor = [this] {
        zentrova_->ParamValue(ParamDefines::SaveCommand, ParamDefines::StoreSettings);
    };
    const auto exit = [this] { close(); };
    const auto showHelp = [this] { help_.HHDisplayContents(winId()); };
    const std::pair<QAction &, std::function<void()>> works[] = {
        {commands_->Menu("mnuFileOpen"), openFile},
        {commands_->Menu("mnuFileSave(0)"), saveFile},
        {commands_->Menu("mnuFileSave(1)"), saveFileAs},
        {commands_->Menu("mnuFileExit"), exit},
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
        GiveWork(action, work);
    }
    commands_->Menu("mnuHalvernWeb").setText(MakerCaption(surroundings_.settings));
    // The click toggles the mark; only the link's state may set it, whatever becomes of the work.
    connect(&commands_->Menu("mnuOnline"), &QAction::triggered, this,
            [this] { commands_->Menu("mnuOnline").setChecked(online_); });
    connect(tabStrip1_, &QTabWidget::currentChanged, this, &FormMain::SelectTab);
}

void FormMain::GiveWork(QAction &action, std::function<void()> work) {
    withWork_.insert(&action);
    action.setEnabled(true);
    // From the event loop: an assistive client that pressed the button mustn't be kept waiting while
    // the work has a dialog open.
    connect(
        &action, &QAction::triggered, this,
        [&action, work = std::move(work)] {
            // What came before it may have opened a dialog, or changed the state of the link.
            if (action.isEnabled() && QApplication::activeModalWidget() == nullptr) {
                work();
            }
        },
        Qt::QueuedConnection);
}

void FormMain::ConnectLink() {
    connect(link_.get(), &LinkSession::StatusChanged, statusText_, &QLabel::setText);
    connect(link_.get(), &LinkSession::OnlineChanged, this, &FormMain::ShowLinkState);
    connect(link_.get(), &LinkSession::FirstReadComplete, this, &FormMain::ConfigureBasicTab);
    connect(link_.get(), &LinkSession::TableRefreshed, this, &FormMain::UpdateDisplay);
}

void FormMain::ConnectPages() {
    timer1_ = Controls::Named(new QTimer(this), "Timer1");
    timer1_->setInterval(BasicGraph::TickMilliseconds);
    timer1_->setTimerType(Qt::PreciseTimer);
    connect(timer1_, &QTimer::timeout, basicPage_, &BasicPage::UpdateGraph);
    connect(basicPage_, &BasicPage::ValueBoxLeft, this, &FormMain::UpdateDisplay);
    connect(wizardPage_, &WizardPage::StartWizard, this, &FormMain::ShowWizard);
    connect(text1_, &ValueOverlay::Left, this, [this] {
        UpdateDisplay();
        basicPage_->PositionRelayMarkers();
    });
}

void FormMain::ConfigureBasicTab() {
    basicPage_->ConfigureBasicTab();
}

void FormMain::ShowLinkState(bool online) {
    struct Row {
        QAction &action;
        bool whenOffline;
        bool whenOnline;
    };
    const Row rows[] = {
        {commands_->Menu("mnuReinit"), false, true},
        {commands_->Button("Online"), true, false},
        {commands_->Button("Offline"), false, true},
        {commands_->Button("Save ZTV"), false, true},
        {commands_->Menu("mnuOptionsUpgradeFirmware"), true, false},
    };
    for (const Row &row : rows) {
        row.action.setEnabled(withWork_.count(&row.action) != 0 &&
                              (online ? row.whenOnline : row.whenOffline));
    }
    wizardPage_->EnableStart(online);
    online_ = online;
    commands_->Menu("mnuOnline").setChecked(online);
}

void FormMain::ToggleOnline() {
    if (online_) {
        GoOffline();
    } else {
        GoOnline(0);
    }
}

void FormMain::Reinitialise() {
    if (Ask(QStringLiteral(
            "Are you sure? This will reset all parameters back to the factory default values.")) ==
        BoxAnswer::Yes) {
        zentrova_->ParamValue(ParamDefines::ReinitCommand, ParamDefines::FactoryDefaults);
    }
}

void FormMain::UpdateCaption() {
    if (CurrentFileName().isEmpty()) {
        return;
    }
    // Paths are parted by "/" elsewhere than on Windows.
    QString name = PathFunctions::FileNameOfPath(CurrentFileName().section(u'/', -1));
    name.replace(QStringLiteral("[*]"), QStringLiteral("[*][*]")); // which stands for itself in a title
    setWindowTitle(name + QStringLiteral(" - ") + ApplicationTitle());
}

void FormMain::ShowMakersPages() {
    const QUrl address = MakerAddress(surroundings_.settings);
    if (!surroundings_.openUrl(address)) {
        surroundings_.dialogs.OwnedMessageBox(
            QStringLiteral("The web browser couldn't be started. The address is\n%1").arg(address.toString()),
            {.icon = BoxIcon::Exclamation, .buttons = BoxButtons::Ok}, ApplicationTitle());
    }
}

void FormMain::ShowCommunications() {
    FormComms(*link_, *zentrova_, surroundings_.dialogs, surroundings_.settings, help_, this).exec();
}

void FormMain::ShowTransmitDelay() {
    FormTransmitDelay(*zentrova_, *link_, surroundings_.dialogs, help_, this).exec();
}

void FormMain::ShowUpgradeFirmware() {
    FormUpgradeFirmware({.bootComm = *bootComm_,
                         .link = *link_,
                         .zentrova = *zentrova_,
                         .dialogs = surroundings_.dialogs,
                         .help = help_,
                         .programFolder = surroundings_.programFolder,
                         .showInEditor = surroundings_.showInEditor},
                        this)
        .exec();
}

// What came before the press may have opened a dialog, or ended the link.
void FormMain::ShowWizard() {
    if (online_ && QApplication::activeModalWidget() == nullptr) {
        frmWizard(*zentrova_, surroundings_.dialogs, help_, this).exec();
    }
}

void FormMain::ShowAbout() {
    FormAbout(AboutContents(*zentrova_, surroundings_.settings),
              {.showMakersPages = [this] { ShowMakersPages(); },
               .showMasterAbout =
                   [this] {
                       surroundings_.dialogs.OwnedMessageBox(
                           Mbaxp::AboutText(), {.icon = BoxIcon::Information, .buttons = BoxButtons::Ok},
                           ApplicationTitle());
                   },
               .startSysInfo = surroundings_.startSysInfo,
               .addCheckoutTab = [this] { AddCheckoutTab(); }},
              help_, this)
        .exec();
}

// Fault (duplicate key) when the tab is there.
void FormMain::AddCheckoutTab() {
    const Tab::Description &tab = Tab::Table[Tab::Checkout - 1];
    if (tabStrip1_->findChild<QWidget *>(QString::fromLatin1(tab.key)) != nullptr) {
        throw Fault::DuplicateKey(QString::fromLatin1(tab.key));
    }
    AddTab(tab, tab.key);
}

std::int16_t FormMain::AskDirection() {
    FormReadWrite form(help_, this);
    form.exec();
    return form.Choice();
}

void FormMain::SelectTab(int stripIndex) {
    if (stripIndex < 0 || Tab::Table[static_cast<std::size_t>(stripIndex)].number == currentTab_) {
        return;
    }
    const Tab::Description &selected = Tab::Table[static_cast<std::size_t>(stripIndex)];
    // The mnemonic of a tab leaves the focus where it is, but what is edited there goes with its page.
    text1_->Close();
    tabStrip1_->tabBar()->setFocus(Qt::OtherFocusReason);
    tabFrames_[static_cast<std::size_t>(currentTab_)]->Leaving();
    if (tabStrip1_->currentIndex() != stripIndex) {
        return; // the user has gone on meanwhile
    }
    tabFrames_[static_cast<std::size_t>(currentTab_)]->hide();
    tabFrames_[static_cast<std::size_t>(selected.number)]->show();
    if (selected.helpContext != 0) {
        helpContext_ = selected.helpContext;
    }
    currentTab_ = selected.number;
    LayOut();
    if (currentTab_ == Tab::Basic) {
        timer1_->start();
    } else {
        timer1_->stop();
    }
    tabFrames_[static_cast<std::size_t>(selected.number)]->Entered();
    ConfigureBasicTab();
    UpdateDisplay();
}

void FormMain::UpdateDisplay() {
    tabFrames_[static_cast<std::size_t>(currentTab_)]->UpdateDisplay();
}

bool FormMain::ValidateAndWriteTextBoxVal(QLineEdit &box) {
    return ::ValidateAndWriteTextBoxVal(box, *entryRules_);
}

void FormMain::resizeEvent(QResizeEvent *event) {
    QMainWindow::resizeEvent(event);
    LayOut();
}

// What the pages paint has the background of the strip, so that it needn't be painted from there on each
// tick.
void FormMain::ColourPages() {
    constexpr int sample = 3;
    QPixmap behind(sample, sample);
    const QPoint middle = tabStrip1_->rect().center();
    tabStrip1_->render(&behind, QPoint(), QRect(middle, behind.size()), QWidget::DrawWindowBackground);
    for (TabPage *page : tabFrames_) {
        if (page != nullptr) {
            QPalette palette = page->palette();
            palette.setColor(QPalette::Window, behind.toImage().pixelColor(sample / 2, sample / 2));
            page->setPalette(palette);
        }
    }
}

void FormMain::changeEvent(QEvent *event) {
    QMainWindow::changeEvent(event);
    const bool otherColours = event->type() == QEvent::StyleChange || event->type() == QEvent::PaletteChange;
    if (otherColours && tabStrip1_ != nullptr) {
        ColourPages();
    }
}

void FormMain::LayOut() {
    if (isMinimized() || tabStrip1_ == nullptr) {
        return;
    }
    const int formWidth = std::max(ToTwips(width()), leastWidth);
    const int formHeight = std::max(ToTwips(height()), leastHeight);
    const int stripWidth = formWidth - 350;
    const int stripHeight = formHeight - 2300;
    tabStrip1_->setGeometry(Controls::FromTwips(stripLeft, stripTop, stripWidth, stripHeight));
    tabFrames_[static_cast<std::size_t>(currentTab_)]->setGeometry(Controls::FromTwips(
        stripLeft + frameLeftInStrip, stripTop + frameTopInStrip, stripWidth - 400, stripHeight - 800));
}

void FormMain::closeEvent(QCloseEvent *event) {
    // Whatever becomes of the save, the answer lets the program close.
    if (!fileCommands_->LookAfterChanges(
            QStringLiteral("The currently open file has been changed. Do you want to save the changes?"))) {
        event->ignore();
        return;
    }
    // The end of the session isn't held up by a box.
    if (!StoreSettings() && !qApp->isSavingSession()) {
        TellOfStore(QStringLiteral("The settings couldn't be stored in"));
    }
    event->accept();
}

bool FormMain::StoreSettings() {
    SettingsStore &store = surroundings_.settings;
    bool stored = WriteCommSettings(store, {.commPort = CommPort(),
                                            .baudRate = BaudRate(),
                                            .parityStop = ParityStop(),
                                            .modbusAddress = ModbusAddress()});
    if (isMinimized()) {
        return stored;
    }
    stored = WriteWindowState(store, isMaximized() ? WindowState::Maximised : WindowState::Normal);
    if (!isMaximized()) {
        stored = WriteWindowPlace(store, {.top = static_cast<double>(ToTwips(y())),
                                          .left = static_cast<double>(ToTwips(x())),
                                          .height = static_cast<double>(ToTwips(height())),
                                          .width = static_cast<double>(ToTwips(width()))});
    }
    return stored;
}

#include "firmware/ui/FormUpgradeFirmware.h"

#include "firmware/ui/FirmwareLine.h"
#include "firmware/ui/NoticeLabel.h"
#include "firmware/ui/StatusPanels.h"
#include "firmware/ui/TransferBar.h"
#include "firmware/ui/UpgradeBoxes.h"
#include "link/LineCodes.h"
#include "support/ProgramFolder.h"
#include "widgets/Controls.h"
#include "widgets/DeferredWork.h"
#include "widgets/FormHelp.h"

#include <QDir>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QMouseEvent>
#include <QPushButton>
#include <QVBoxLayout>

namespace ztv {

namespace {

// Twips.
constexpr int heightWithPanel = 6570;
constexpr int heightWithout = 2535;

constexpr int margin = 12;
constexpr int gap = 4;
constexpr int titleScale = 2;
constexpr int leastWidth = 640;
constexpr char16_t registeredMark = 174;

QString UsualFirmwareFile(const QString &programFolder) {
    return QDir::toNativeSeparators(programFolder + QStringLiteral("/Firmware/B70214.hex"));
}

} // namespace

struct FormUpgradeFirmware::Command {
    const char *name;
    const char *caption;
    const char *toolTip;
    bool device = false; // enabled only while a boot loader is connected
};

FormUpgradeFirmware::FormUpgradeFirmware(Dependencies dependencies, QWidget *parent)
    : QDialog(parent),
      dependencies_(std::move(dependencies)),
      console_(
          new UpgradeConsole(dependencies_.bootComm, {.showInEditor = dependencies_.showInEditor}, this)),
      upgrade_(new OneButtonUpgrade(*console_, dependencies_.link, dependencies_.zentrova, this)),
      report_(new UpgradeReport(*console_, *upgrade_,
                                dependencies_.versions != nullptr
                                    ? *dependencies_.versions
                                    : *new UpgradeVersions(dependencies_.link, dependencies_.zentrova, this),
                                this)),
      boxes_(new UpgradeBoxes(*console_, *upgrade_, dependencies_.dialogs, this)) {
    Controls::Named(this, "FormUpgradeFirmware");
    setWindowTitle(QStringLiteral("Upgrade Firmware"));
    setMinimumWidth(leastWidth);

    QLayout *buttons = BuildButtons(); // the keyboard's order is that in which the buttons are built
    QLayout *firmware = BuildFirmwareLine();
    QLayout *notice = BuildNotice();
    transferBar_ = new TransferBar(this);
    BuildExpertPanel();
    device_ = new NoticeLabel("LabelDevice", NoticeLabel::Fit::Elided, this);
    BuildStatusBar();
    LayOut(BuildTitle(), buttons, firmware, notice);

    ConnectConsole();
    SetDesignHeight(heightWithout);
    console_->Load(dependencies_.link.CommPort(), BitsPerSecondOfIndex(dependencies_.link.BaudRate()),
                   FolderForOwnFiles(dependencies_.programFolder));
    ShowDevice();
    ShowNotice();
    FormHelp::Offer(*this, dependencies_.help.Topic(HelpContextID));
    commandUpgrade_->setFocus();
}

void FormUpgradeFirmware::LayOut(QWidget *title, QLayout *buttons, QLayout *firmware, QLayout *notice) {
    auto *added = new QVBoxLayout;
    added->setSpacing(gap);
    added->addLayout(firmware);
    added->addWidget(transferBar_);
    added->addLayout(notice);
    auto *inner = new QVBoxLayout;
    inner->setContentsMargins(margin, margin, margin, 0);
    inner->setSpacing(margin);
    inner->addWidget(title);
    inner->addLayout(buttons);
    inner->addLayout(added);
    inner->addWidget(frame1_, 1);
    inner->addStretch();
    inner->addWidget(device_);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(gap);
    column->addLayout(inner, 1);
    column->addWidget(statusBar1_);
}

QLayout *FormUpgradeFirmware::BuildButtons() {
    commandUpgrade_ = NewButton({"CommandUpgradeFirmware", "Upgrade Firmware", "Upgrade ZTV500-100 Firmware"},
                                [this] { Upgrade(); });
    commandClose_ = NewButton({"CommandClose", "Close", "Close window"}, [this] { reject(); });
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(commandUpgrade_);
    buttons->addWidget(commandClose_);
    return buttons;
}

QLayout *FormUpgradeFirmware::BuildFirmwareLine() {
    firmwareLine_ = new FirmwareLine(UsualFirmwareFile(dependencies_.programFolder), this);
    commandChooseFile_ = NewButton(
        {"CommandChooseFile", "Choose File...", "Use another file for this upgrade; copies nothing"},
        [this] { ChooseFile(); });
    auto *row = new QHBoxLayout;
    row->addWidget(firmwareLine_, 1);
    row->addWidget(commandChooseFile_);
    return row;
}

QLayout *FormUpgradeFirmware::BuildNotice() {
    notice_ = new NoticeLabel("LabelNotice", NoticeLabel::Fit::Wrapped, this);
    commandStartSensor_ =
        NewButton({"CommandStartSensor", "Start Sensor", "Leave the boot loader and start the firmware"},
                  [this] { StartSensor(); });
    QSizePolicy policy = commandStartSensor_->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    commandStartSensor_->setSizePolicy(policy);
    auto *row = new QHBoxLayout;
    row->addWidget(notice_, 1);
    row->addWidget(commandStartSensor_);
    return row;
}

// Deliberate: the panel shows the port's name. A device with another name is shown above the panel.
void FormUpgradeFirmware::ShowDevice() {
    const QString port = dependencies_.bootComm.Settings().PortName;
    const QString device = dependencies_.link.DeviceOfPort();
    if (!device.endsWith(port)) {
        device_->Show(UpgradeNotice::Tone::Quiet, QStringLiteral("%1 is %2").arg(port, device), device);
    }
}

void FormUpgradeFirmware::BuildStatusBar() {
    statusBar1_ =
        Controls::Named(new StatusPanels({{QStringLiteral("Status"), QStringLiteral("Status"), 5},
                                          {QStringLiteral("Bootloader Firmware Version"),
                                           QStringLiteral("Bootloader Firmware Version"), 5},
                                          {QStringLiteral("Processor"), QStringLiteral("Processor"), 3},
                                          {QStringLiteral("Com Port"), QStringLiteral("Com Port"), 2},
                                          {QStringLiteral("Baud Rate"), QStringLiteral("Baud Rate"), 2}},
                                         this),
                        "StatusBar1");
}

QWidget *FormUpgradeFirmware::BuildTitle() {
    auto *title = new QWidget(this);
    lblTitle_ = Controls::Named(new QLabel(QStringLiteral("Zentrova"), title), "lblTitle");
    QFont font = lblTitle_->font();
    font.setPointSizeF(font.pointSizeF() * titleScale);
    font.setBold(true);
    lblTitle_->setFont(font);
    lblTitle_->installEventFilter(this);
    auto *mark = Controls::Named(new QLabel(QString(QChar(registeredMark)), title), "lblCircleR");
    auto *row = new QHBoxLayout(title);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(2);
    row->addStretch();
    row->addWidget(lblTitle_);
    row->addWidget(mark, 0, Qt::AlignTop);
    row->addStretch();
    return title;
}

QAbstractButton *FormUpgradeFirmware::NewButton(const Command &command, std::function<void()> work) {
    auto *button = Controls::Captioned<QPushButton>(command.name, command.caption, this);
    button->setToolTip(QString::fromLatin1(command.toolTip));
    button->setAutoDefault(false);
    if (command.device) {
        button->setEnabled(false);
        connect(console_, &UpgradeConsole::ConnectedChanged, button, &QWidget::setEnabled);
    }
    DeferredWork::OnPress(*button, std::move(work));
    return button;
}

void FormUpgradeFirmware::BuildExpertPanel() {
    frame1_ = Controls::Named(new QGroupBox(this), "Frame1");
    auto *grid = new QGridLayout(frame1_);
    const std::pair<Command, std::function<void()>> left[] = {
        {{"CommandConnect", "Connect", "Establishes communication with the bootloader"},
         [this] { console_->ConnectBootloader(); }},
        {{"CommandRead", "Read Device", "Read device's program into memory (.MCP files)", true},
         [this] { console_->ReadDevice(); }},
        {{"CommandErase", "Erase Device", "Erases the device's Flash memory", true},
         [this] { console_->EraseDevice(); }},
        {{"CommandWrite", "Write Device", "Writes current memory (.MCP files) to the device", true},
         [this] { console_->WriteDevice(); }},
        {{"CommandRunApp", "Run App", "Disable bootloader and run application code", true},
         [this] { RunApp(); }},
    };
    const std::pair<Command, std::function<void()>> right[] = {
        {{"CommandDisconnect", "Disconnect", "Closes communication with the bootloader"},
         [this] { console_->DisconnectBootloader(); }},
        {{"CommandOpenHexFile", "Open Hex File", "Reads and converts a hex file into memory (.MCP file)"},
         [this] { OpenHexFile(); }},
        {{"CommandSaveHexFile", "Save Hex File", "Save the current memory (.MCP files) to a hex file"},
         [this] { SaveHexFile(); }},
        {{"CommandEraseFiles", "Erase Files", "Erases all .MCP files"}, [this] { console_->EraseFiles(); }},
        {{"CommandViewDataFiles", "View Files", "View current memory (located in .MCP files)"},
         [this] { console_->ViewFiles(); }},
    };
    int row = 0;
    for (const auto &[command, work] : left) {
        grid->addWidget(NewButton(command, work), row++, 0);
    }
    row = 0;
    for (const auto &[command, work] : right) {
        grid->addWidget(NewButton(command, work), row++, 1);
    }
    grid->addWidget(
        NewButton({"CommandAbort", "Abort", "Aborts current operation"}, [this] { console_->Abort(); }), row,
        0, 1, 2, Qt::AlignHCenter);
}

void FormUpgradeFirmware::ConnectConsole() {
    connect(console_, &UpgradeConsole::PanelChanged, this,
            [this](UpgradeConsole::Panel panel, const QString &text, const QString &toolTip) {
                statusBar1_->SetText(static_cast<int>(panel), text, toolTip);
            });
    connect(console_, &UpgradeConsole::PointerChanged, this, [this](Qt::CursorShape shape) {
        if (shape == Qt::ArrowCursor) {
            unsetCursor();
        } else {
            setCursor(shape);
        }
    });
    connect(console_, &UpgradeConsole::RedrawWanted, this, [this] { repaint(); });
    connect(console_, &UpgradeConsole::TransferStarted, transferBar_, &TransferBar::Start);
    connect(console_, &UpgradeConsole::TransferAdvanced, transferBar_, &TransferBar::Advance);
    connect(console_, &UpgradeConsole::TransferEnded, transferBar_, [this](const ImageWritten &image) {
        transferBar_->End(image.result == TransferResult::Finished);
    });
    connect(upgrade_, &OneButtonUpgrade::RunningChanged, this, &FormUpgradeFirmware::ShowRunning);
    connect(report_, &UpgradeReport::NoticeChanged, this, &FormUpgradeFirmware::ShowNotice);
    connect(firmwareLine_, &FirmwareLine::FileChanged, this, [this] {
        if (firmwareLine_->FileIsGood()) {
            report_->FirmwareIsThere();
        }
        ShowNotice();
    });
}

void FormUpgradeFirmware::ShowRunning(bool running) {
    commandUpgrade_->setEnabled(!running);
    commandClose_->setEnabled(!running);
    commandChooseFile_->setEnabled(!running);
    if (running) {
        transferBar_->Clear();
    } else if (focusWidget() == nullptr) { // a button loses the focus when disabled
        commandUpgrade_->setFocus();
    }
}

// Shows how it is with the sensor. As long as there is nothing to say, shows what an upgrade would do.
void FormUpgradeFirmware::ShowNotice() {
    UpgradeNotice notice = report_->Notice();
    if (notice.text.isEmpty() && !upgrade_->Running() && !firmwareLine_->FileIsGood()) {
        notice = UpgradeReport::WithoutFirmware();
    }
    notice_->Show(notice.tone, notice.text);
    if (!notice.offersStart && commandStartSensor_->hasFocus()) {
        commandUpgrade_->setFocus();
    }
    commandStartSensor_->setVisible(notice.offersStart);
}

// Sets the height to that of the design, or to more if the contents need it with a larger font.
void FormUpgradeFirmware::SetDesignHeight(int twips) {
    designHeight_ = twips;
    frame1_->setVisible(twips != heightWithout);
    layout()->activate();
    setFixedHeight(std::max(twips / Controls::TwipsPerPixel, layout()->minimumSize().height()));
}

bool FormUpgradeFirmware::eventFilter(QObject *watched, QEvent *event) {
    if (watched == lblTitle_ && event->type() == QEvent::MouseButtonPress &&
        static_cast<QMouseEvent *>(event)->modifiers() == Qt::ControlModifier) {
        SetDesignHeight(designHeight_ == heightWithout ? heightWithPanel : heightWithout);
        return true;
    }
    return QDialog::eventFilter(watched, event);
}

void FormUpgradeFirmware::Upgrade() {
    if (upgrade_->Running() || !boxes_->ConfirmUpgrade()) {
        return;
    }
    firmwareLine_->LookAgain();
    if (upgrade_->Run(firmwareLine_->Path()) == UpgradeOutcome::Upgraded) {
        firmwareLine_->ReturnToUsual();
    }
}

void FormUpgradeFirmware::RunApp() {
    if (boxes_->ConfirmRunApp()) {
        console_->RunApp();
    }
}

// Does what Run App does, after a connect if that is needed.
void FormUpgradeFirmware::StartSensor() {
    const bool connected = dependencies_.bootComm.Settings().PortHandle > 0 ||
                           console_->ConnectBootloader() == UpgradeConsole::ConnectOutcome::Connected;
    if (connected) {
        RunApp();
    } else {
        report_->NoLoaderToStart();
    }
}

void FormUpgradeFirmware::ChooseFile() {
    if (const auto chosen = boxes_->AskForFirmwareFile(firmwareLine_->Path())) {
        firmwareLine_->Choose(*chosen);
    }
}

void FormUpgradeFirmware::OpenHexFile() {
    if (const auto chosen = boxes_->AskForHexFileToOpen()) {
        console_->ImportHexFile(*chosen);
    }
}

void FormUpgradeFirmware::SaveHexFile() {
    const auto chosen = boxes_->AskForHexFileToSave();
    if (chosen && !console_->SaveHexFile(*chosen)) {
        boxes_->ShowIsMemoryImage(*chosen);
    }
}

void FormUpgradeFirmware::done(int result) {
    if (upgrade_->Running()) {
        return;
    }
    console_->DisconnectBootloader();
    QDialog::done(result);
}

} // namespace ztv

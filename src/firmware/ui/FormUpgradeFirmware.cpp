#include "firmware/ui/FormUpgradeFirmware.h"

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
constexpr int titleScale = 2;
constexpr int leastWidth = 640;
constexpr char16_t registeredMark = 174;

QString FirmwareFile(const QString &programFolder) {
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
      boxes_(new UpgradeBoxes(*console_, *upgrade_, dependencies_.dialogs, this)) {
    Controls::Named(this, "FormUpgradeFirmware");
    setWindowTitle(QStringLiteral("Upgrade Firmware"));
    setMinimumWidth(leastWidth);

    auto *upgrade = NewButton({"CommandUpgradeFirmware", "Upgrade Firmware", "Upgrade ZTV500-100 Firmware"},
                              [this] { Upgrade(); });
    auto *close = NewButton({"CommandClose", "Close", "Close window"}, [this] { reject(); });
    connect(upgrade_, &OneButtonUpgrade::RunningChanged, this, [this, upgrade, close](bool running) {
        upgrade->setEnabled(!running);
        close->setEnabled(!running);
        if (!running && focusWidget() == nullptr) { // a button loses the focus when disabled
            upgrade->setFocus();
        }
    });
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(upgrade);
    buttons->addWidget(close);

    transferBar_ = new TransferBar(this);
    BuildExpertPanel();
    statusBar1_ =
        Controls::Named(new StatusPanels({{QStringLiteral("Status"), QStringLiteral("Status"), 5},
                                          {QStringLiteral("Bootloader Firmware Version"),
                                           QStringLiteral("Bootloader Firmware Version"), 5},
                                          {QStringLiteral("Processor"), QStringLiteral("Processor"), 3},
                                          {QStringLiteral("Com Port"), QStringLiteral("Com Port"), 2},
                                          {QStringLiteral("Baud Rate"), QStringLiteral("Baud Rate"), 2}},
                                         this),
                        "StatusBar1");

    auto *inner = new QVBoxLayout;
    inner->setContentsMargins(margin, margin, margin, 0);
    inner->setSpacing(margin);
    inner->addWidget(BuildTitle());
    inner->addLayout(buttons);
    inner->addWidget(transferBar_);
    inner->addWidget(frame1_, 1);
    inner->addStretch();
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addLayout(inner, 1);
    column->addWidget(statusBar1_);

    ConnectConsole();
    SetDesignHeight(heightWithout);
    console_->Load(dependencies_.link.CommPort(), BitsPerSecondOfIndex(dependencies_.link.BaudRate()),
                   FolderForOwnFiles(dependencies_.programFolder));
    FormHelp::Offer(*this, dependencies_.help.Topic(HelpContextID));
    upgrade->setFocus();
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
    connect(console_, &UpgradeConsole::TransferEnded, transferBar_, &TransferBar::End);
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
    if (!upgrade_->Running() && boxes_->ConfirmUpgrade()) {
        upgrade_->Run(FirmwareFile(dependencies_.programFolder));
    }
}

void FormUpgradeFirmware::RunApp() {
    if (boxes_->ConfirmRunApp()) {
        console_->RunApp();
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

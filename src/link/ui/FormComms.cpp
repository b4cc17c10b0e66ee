#include "link/ui/FormComms.h"

#include "link/SerialPorts.h"
#include "link/ui/FormSearch.h"
#include "model/ParamDefines.h"
#include "support/Numbers.h"
#include "widgets/Colours.h"
#include "widgets/Controls.h"
#include "widgets/EntryFocus.h"
#include "widgets/FormHelp.h"
#include "widgets/TextBoxFunctions.h"
#include "widgets/WhyDisabled.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

namespace ztv {

namespace {

constexpr double highestPort = 255;
constexpr double highestAddress = 247;
constexpr int numberWidth = 72;
constexpr int countsEveryMs = 1000;
const QString lockedOnline = QStringLiteral("Locked while online. Go offline to change them.");

QPushButton *NewButton(const char *name, const char *caption, const char *toolTip) {
    auto *button = Controls::Captioned<QPushButton>(name, caption);
    button->setToolTip(QString::fromLatin1(toolTip));
    button->setAutoDefault(false);
    return button;
}

} // namespace

FormComms::FormComms(LinkSession &link, ClassZentrova &zentrova, UserDialogs &dialogs,
                     SettingsStore &settings, ClassMyHtmlHelp &help, QWidget *parent)
    : QDialog(parent),
      link_(link),
      zentrova_(zentrova),
      dialogs_(dialogs),
      settings_(settings),
      help_(help) {
    Controls::Named(this, "FormComms");
    setWindowTitle(QStringLiteral("Communications Setup"));
    auto *column = new QVBoxLayout(this);
    BuildSettings(*column);
    BuildStatistics(*column);
    BuildButtons(*column);
    column->setSizeConstraint(QLayout::SetFixedSize);

    FillFromTable(*baudRate_, ParamDefines::BaudRateCode);
    FillFromTable(*parityStop_, ParamDefines::ParityStopCode);
    port_->setText(QString::number(link_.CommPort()));
    address_->setText(QString::number(link_.ModbusAddress()));
    baudRate_->setCurrentIndex(link_.BaudRate());
    parityStop_->setCurrentIndex(link_.ParityStop());
    ShowDevice();
    ShowLine();
    EnableDisableCommSettings(link_.PortIsOpen());

    Controls::Named(&timer_, "Timer1");
    connect(&timer_, &QTimer::timeout, this, &FormComms::ShowLine);
    timer_.start(countsEveryMs);
}

void FormComms::BuildSettings(QVBoxLayout &column) {
    // In their tab order.
    port_ = Controls::Named(new QLineEdit(this), "TextPort");
    device_ = Controls::Named(new DeviceBox(this), "ComboDevice");
    baudRate_ = Controls::Named(new QComboBox(this), "ComboBaudRate");
    parityStop_ = Controls::Named(new QComboBox(this), "ComboParityStopBits");
    address_ = Controls::Named(new QLineEdit(this), "TextModbusAddress");
    struct Row {
        const char *label;
        const char *caption;
        QWidget *control;
        const char *toolTip;
    };
    const Row rows[] = {
        {"LabelPort", "Port:", port_, "The serial communications port"},
        {"LabelBaud", "Baud Rate:", baudRate_, "Baud rate"},
        {"LabelParityStop", "Parity/Stop Bits:", parityStop_, "Parity & Stop Bits"},
        {"LabelAddress", "Modbus Address:", address_, "Modbus Address of ZTV500-100"},
    };
    auto *grid = new QGridLayout;
    int line = 0;
    for (const Row &row : rows) {
        const QString caption = QString::fromLatin1(row.caption);
        auto *label = Controls::Named(new QLabel(caption), row.label);
        label->setBuddy(row.control);
        row.control->setToolTip(QString::fromLatin1(row.toolTip));
        row.control->setAccessibleName(caption.chopped(1));
        row.control->setMinimumWidth(numberWidth);
        grid->addWidget(label, line, 0);
        grid->addWidget(row.control, line, 1);
        ++line;
    }
    device_->setAccessibleName(QStringLiteral("Device of the port"));
    grid->addWidget(device_, 0, 2);
    // Beside the fields, where the form has room.
    locked_ = Controls::Named(new QLabel, "LabelLocked");
    locked_->setTextFormat(Qt::PlainText);
    locked_->setWordWrap(true);
    locked_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred); // the text must not widen the form
    locked_->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    grid->addWidget(locked_, 1, 2, line - 1, 1);
    grid->setColumnStretch(2, 1);
    column.addLayout(grid);

    for (QLineEdit *box : {port_, address_}) {
        EntryFocus::SelectAllOnEntry(*box);
        EntryFocus::ValidateOnLeave(*box, [this, box] { return IsValid(*box); });
    }
    connect(port_, &QLineEdit::textChanged, this, &FormComms::ShowDevice);
    connect(device_, &DeviceBox::DeviceChosen, this, &FormComms::TakeDevice);
    lockedOnline_ = {port_, device_, baudRate_, parityStop_, address_};
    for (QWidget *control : lockedOnline_) {
        Colours::KeepLegibleWhileDisabled(*control); // they show the settings of the open link
    }
}

void FormComms::BuildStatistics(QVBoxLayout &column) {
    auto *frame = Controls::Named(new QGroupBox(QStringLiteral("Statistics")), "FrameErrors");
    auto *grid = new QGridLayout(frame);
    const std::pair<const char *, const char *> rows[] = {{"LabelTimeouts", "Timeouts:"},
                                                          {"LabelCrcErrors", "CRC Errors:"}};
    QLabel **counts[] = {&timeouts_, &crcErrors_};
    for (int row = 0; row < 2; ++row) {
        const auto &[name, text] = rows[row];
        const QString caption = QString::fromLatin1(text);
        grid->addWidget(Controls::Named(new QLabel(caption), Controls::Member(name, 0)), row, 0);
        QLabel *count = Controls::Named(new QLabel, Controls::Member(name, 1));
        count->setAccessibleDescription(caption.chopped(1)); // a name would hide the number
        count->setMinimumWidth(numberWidth);
        grid->addWidget(count, row, 1);
        *counts[row] = count;
    }
    auto *reset = NewButton("CommandReset", "&Reset", "Reset statistical counts");
    connect(reset, &QPushButton::clicked, this, [this] {
        link_.TimeoutCount(0);
        link_.CrcErrorCount(0);
        ShowLine();
    });
    grid->addWidget(reset, 0, 2, 2, 1, Qt::AlignVCenter | Qt::AlignRight);
    grid->setColumnStretch(2, 1);
    echo_ = Controls::Named(new QLabel(QStringLiteral("The adapter gives back what is sent (local echo).")),
                            "LabelEcho");
    echo_->hide();
    grid->addWidget(echo_, 2, 0, 1, 3);
    column.addWidget(frame);
}

void FormComms::BuildButtons(QVBoxLayout &column) {
    auto *search = NewButton("CommandSearch", "&Search...", "Searches for Modbus devices");
    auto *ok = NewButton("CommandOK", "&OK", "Accept current settings & close");
    auto *cancel = NewButton("CommandCancel", "&Cancel", "Discard any changes and close");
    auto *help = NewButton("CommandHelp", "&Help", "Displays help file");
    FormHelp::Offer(*this, help_.Topic(HelpContextID), help);
    ok->setDefault(true);
    connect(search, &QPushButton::clicked, this, &FormComms::Search);
    connect(ok, &QPushButton::clicked, this, &FormComms::accept);
    connect(cancel, &QPushButton::clicked, this, &FormComms::reject);
    auto *row = new QHBoxLayout;
    row->addWidget(search);
    row->addStretch();
    for (QPushButton *button : {ok, cancel, help}) {
        row->addWidget(button);
    }
    column.addLayout(row);
    lockedOnline_.insert(lockedOnline_.end(), {ok, search});
}

// Fills the list with the range that the table gives.
void FormComms::FillFromTable(QComboBox &list, std::int16_t tag) const {
    for (std::int32_t code = zentrova_.ParamMin(tag); code <= zentrova_.ParamMax(tag); ++code) {
        list.addItem(zentrova_.ParamLookUp(zentrova_.ParamUnits(tag), code));
    }
}

bool FormComms::IsValid(QLineEdit &box) {
    const bool isPort = &box == port_;
    return TextBoxFunctions::ValidateNumericEntry(
        box, isPort ? QStringLiteral("Port Number") : QStringLiteral("Modbus Address"), 1,
        isPort ? highestPort : highestAddress, true, dialogs_);
}

void FormComms::EnableDisableCommSettings(bool online) {
    for (QWidget *control : lockedOnline_) {
        control->setEnabled(!online);
        WhyDisabled::Explain(*control, lockedOnline);
    }
    ShowDevice();
}

void FormComms::ShowLocks(bool online) {
    const std::optional<std::int16_t> port = Port();
    const bool deviceIsSet = port && !SerialPorts::DeviceCanBeChosen(*port);
    const QString setElsewhere =
        QStringLiteral("The device is set by ZTVLINK_PORT_%1, outside of this program.")
            .arg(port.value_or(0));
    const QString ofDevice = deviceIsSet ? setElsewhere : lockedOnline;
    locked_->setText(online ? lockedOnline : deviceIsSet ? setElsewhere : QString());
    WhyDisabled::Explain(*device_, port ? ofDevice : QStringLiteral("Enter a port number first."));
}

void FormComms::ShowLine() {
    timeouts_->setText(QString::number(link_.TimeoutCount()));
    crcErrors_->setText(QString::number(link_.CrcErrorCount()));
    echo_->setVisible(link_.EchoIsPresent());
}

// Returns the typed port number, if it is a valid one.
std::optional<std::int16_t> FormComms::Port() const {
    const QString text = port_->text();
    if (!IsNumeric(text)) {
        return std::nullopt;
    }
    const double number = ToNumber(text);
    return number >= 1 && number <= highestPort ? std::optional(ToInt16(number)) : std::nullopt;
}

void FormComms::ShowDevice() {
    const std::optional<std::int16_t> port = Port();
    device_->Device(port ? SerialPorts::DeviceOfPort(settings_, *port) : QString());
    device_->setEnabled(port && port_->isEnabled() && SerialPorts::DeviceCanBeChosen(*port));
    ShowLocks(!port_->isEnabled());
}

void FormComms::TakeDevice(const QString &device) {
    const std::optional<std::int16_t> named = SerialPorts::PortOfDevice(device);
    if (named) {
        port_->setText(QString::number(*named));
    } else if (const std::optional<std::int16_t> port = Port()) {
        devicesBefore_.try_emplace(*port, SerialPorts::ChosenDevice(settings_, *port));
        SerialPorts::ChooseDevice(settings_, *port, device);
    }
}

void FormComms::PutDevicesBack() {
    for (const auto &[port, device] : devicesBefore_) {
        SerialPorts::ChooseDevice(settings_, port, device);
    }
}

void FormComms::Search() {
    if (!EntryIsValid(*port_)) {
        return;
    }
    FormSearch search(link_, zentrova_, dialogs_, help_,
                      {.port = ToInt16(ToNumber(port_->text())),
                       .baud = ToInt16(baudRate_->currentIndex()),
                       .parityStop = ToInt16(parityStop_->currentIndex())},
                      this);
    search.exec();
    if (const std::optional<CommSettings> used = search.Used()) {
        address_->setText(QString::number(used->address));
        baudRate_->setCurrentIndex(used->baud);
        parityStop_->setCurrentIndex(used->parityStop);
    }
}

// Validates a box that may still have the focus: an assistive client presses a button without leaving the box
// first.
bool FormComms::EntryIsValid(QLineEdit &box) {
    if (IsValid(box)) {
        return true;
    }
    box.setFocus();
    TextBoxFunctions::SelectAllText(box);
    return false;
}

void FormComms::accept() {
    if (!EntryIsValid(*port_) || !EntryIsValid(*address_)) {
        return;
    }
    link_.CommPort(ToInt16(ToNumber(port_->text())));
    link_.ModbusAddress(ToInt16(ToNumber(address_->text())));
    link_.BaudRate(ToInt16(baudRate_->currentIndex()));
    link_.ParityStop(ToInt16(parityStop_->currentIndex()));
    link_.SetMbaxp1CommProperties(link_.CommPort(), link_.BaudRate(), link_.ParityStop(), 0);
    QDialog::accept();
}

// Restores the master's settings, since the search leaves the master on the last settings that it tried. Also
// called when the window is closed by its frame.
void FormComms::reject() {
    PutDevicesBack();
    link_.SetMbaxp1CommProperties(link_.CommPort(), link_.BaudRate(), link_.ParityStop(), 0);
    QDialog::reject();
}

} // namespace ztv

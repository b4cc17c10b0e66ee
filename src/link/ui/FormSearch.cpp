#include "link/ui/FormSearch.h"

#include "link/ui/ResultsList.h"
#include "support/Numbers.h"
#include "support/TimeLeftText.h"
#include "widgets/Colours.h"
#include "widgets/Controls.h"
#include "widgets/EntryFocus.h"
#include "widgets/FormHelp.h"
#include "widgets/TextBoxFunctions.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>
#include <limits>

namespace ztv {

namespace {

constexpr std::int16_t lowestAddress = 1;
constexpr std::int16_t highestAddress = 247;
constexpr std::size_t fromBox = 0;
constexpr std::size_t toBox = 1;

enum Column { AddressColumn, BaudColumn, ParityStopColumn, ColumnCount };
constexpr int tagRole = Qt::UserRole; // an index, or the row's key in the first column

constexpr int resultRows = 6;
constexpr int sectionGap = 12;
constexpr double longestSearchMs = 599'000;

// Makes a widget keep its place while hidden, so that nothing moves when a search starts.
template <typename Widget>
Widget *Shy(Widget *widget) {
    QSizePolicy policy = widget->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    widget->setSizePolicy(policy);
    widget->hide();
    return widget;
}

template <typename Button>
Button *Captioned(const char *name, const char *caption, const char *toolTip) {
    auto *button = Controls::Captioned<Button>(name, caption);
    button->setToolTip(QString::fromLatin1(toolTip));
    return button;
}

QLabel *Label(const char *name, const char *text) {
    return Controls::Named(new QLabel(QString::fromLatin1(text)), name);
}

int WidthOf(const QWidget &widget, const QString &text) {
    return widget.fontMetrics().horizontalAdvance(text);
}

void SetWidth(QWidget *widget, const QString &text) {
    widget->setMinimumWidth(WidthOf(*widget, text));
}

} // namespace

FormSearch::FormSearch(LinkSession &link, ClassZentrova &zentrova, UserDialogs &dialogs,
                       ClassMyHtmlHelp &help, const CommSettings &start, QWidget *parent)
    : QDialog(parent),
      link_(link),
      zentrova_(zentrova),
      dialogs_(dialogs),
      search_(link, start,
              {.addressRange = [this] { return AddressRange(); },
               .varyCommSettings = [this] { return checkVaryCommSettings_->isChecked(); }}) {
    Controls::Named(this, "FormSearch");
    setWindowTitle(QStringLiteral("Search"));
    setModal(true);

    checkVaryCommSettings_ = Captioned<QCheckBox>(
        "CheckVaryCommSettings", "&Vary Comm Settings",
        "Search routine iterates through all possible baud, parity, & stop bit selections");
    auto *left = new QVBoxLayout;
    left->addWidget(BuildAddressRange());
    left->addWidget(checkVaryCommSettings_);
    left->addSpacing(sectionGap);
    left->addLayout(BuildResults(), 1);
    auto *columns = new QHBoxLayout;
    columns->setSpacing(sectionGap);
    columns->addLayout(left, 1);
    columns->addLayout(BuildButtons());
    auto *rows = new QVBoxLayout(this);
    rows->setSpacing(sectionGap);
    rows->addLayout(columns, 1);
    rows->addLayout(BuildStatus());

    ConnectControls();
    FormHelp::Offer(*this, help.Topic(HelpContextID), commandHelp_);
    ConnectSearch();
    optionAddressRange_[0]->setChecked(true);
    SetTabOrder();
    commandStart_->setFocus();
}

QWidget *FormSearch::BuildAddressRange() {
    auto *frame = Controls::Named(new QGroupBox(QStringLiteral("Address Range")), "FrameAddressRange");
    optionAddressRange_ = {Controls::Captioned<QRadioButton>("OptionAddressRange(0)", "&All (1-247)"),
                           Controls::Captioned<QRadioButton>("OptionAddressRange(1)", "&From")};
    struct Box {
        const char *text;
        const char *toolTip;
        const char *accessibleName;
    };
    constexpr std::array boxes = {Box{"1", "Start search address", "From"},
                                  Box{"247", "Stop search address", "To"}};
    for (std::size_t i = 0; i < boxes.size(); ++i) {
        auto *box = Controls::Named(new QLineEdit(QString::fromLatin1(boxes[i].text)),
                                    Controls::Member("TextAddressRange", static_cast<int>(i)));
        box->setToolTip(QString::fromLatin1(boxes[i].toolTip));
        box->setAccessibleName(QString::fromLatin1(boxes[i].accessibleName));
        box->setFixedWidth(WidthOf(*box, QStringLiteral("0000")) + 2 * sectionGap);
        box->setEnabled(false);
        Colours::KeepLegibleWhileDisabled(*box);
        EntryFocus::SelectAllOnEntry(*box);
        EntryFocus::ValidateOnLeave(*box, [this, i] { return AddressRangeIsValid(i); });
        textAddressRange_[i] = box;
    }
    auto *to = Label("LabelTo", "To");
    to->setBuddy(textAddressRange_[toBox]);

    auto *range = new QHBoxLayout;
    range->addWidget(optionAddressRange_[1]);
    range->addWidget(textAddressRange_[fromBox]);
    range->addWidget(to);
    range->addWidget(textAddressRange_[toBox]);
    range->addStretch();
    auto *rows = new QVBoxLayout(frame);
    rows->addWidget(optionAddressRange_[0]);
    rows->addLayout(range);
    return frame;
}

QLayout *FormSearch::BuildStatus() {
    labelSearchStatus_ = Shy(Label("LabelSearchStatus", "Searching..."));
    labelCommStatus_ = Shy(Label("LabelCommStatus", "Comm Status..."));
    progress_ = Shy(Controls::Named(new QProgressBar, "SearchProgress"));
    progress_->setAccessibleName(QStringLiteral("Search progress"));
    progress_->setTextVisible(false);
    timeLeft_ = Shy(Label("LabelTimeLeft", ""));
    // Fixed widths: the texts change with each probe, and nothing beside them should move.
    SetWidth(labelSearchStatus_, QStringLiteral("Searching 247"));
    SetWidth(labelCommStatus_, QStringLiteral("38400,N2"));
    SetWidth(timeLeft_, TimeLeftText(longestSearchMs));
    timeLeft_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);

    auto *row = new QHBoxLayout;
    row->setSpacing(sectionGap);
    row->addWidget(labelCommStatus_); // stays visible after the search
    row->addWidget(labelSearchStatus_);
    row->addWidget(progress_, 1);
    row->addWidget(timeLeft_);
    return row;
}

QLayout *FormSearch::BuildResults() {
    auto *results = Label("LabelResults", "Results:");
    labelDevicesFound_ = Label("LabelDevicesFound", "Devices Found: 0");
    listViewResults_ = Controls::Named(new ResultsList, "ListViewResults");
    results->setBuddy(listViewResults_);
    listViewResults_->setAccessibleName(QStringLiteral("Results"));
    listViewResults_->setHeaderLabels(
        {QStringLiteral("Address"), QStringLiteral("Baud"), QStringLiteral("ParityStopBits")});
    listViewResults_->header()->setSectionResizeMode(QHeaderView::Stretch);
    listViewResults_->header()->setSectionsMovable(false);
    listViewResults_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    listViewResults_->setMinimumWidth(
        ColumnCount * (WidthOf(*listViewResults_, QStringLiteral("ParityStopBits")) + 2 * sectionGap));
    listViewResults_->setMinimumHeight(listViewResults_->fontMetrics().lineSpacing() * (resultRows + 3));
    listViewResults_->EmptyText(QStringLiteral("Press Start to search for devices."));
    checkUseSelectedCommSettings_ =
        Captioned<QCheckBox>("CheckUseSelectedCommSettings", "&Use Selected Comm Settings",
                             "Changes software comm settings to the selected value in the Results table");
    checkUseSelectedCommSettings_->setEnabled(false);

    auto *words = new QHBoxLayout;
    words->addWidget(results);
    words->addStretch();
    words->addWidget(labelDevicesFound_);
    auto *rows = new QVBoxLayout;
    rows->addLayout(words);
    rows->addWidget(listViewResults_, 1);
    rows->addWidget(checkUseSelectedCommSettings_);
    return rows;
}

QLayout *FormSearch::BuildButtons() {
    commandStart_ = Captioned<QPushButton>("CommandStart", "&Start", "Start Searching");
    commandStart_->setDefault(true);
    commandStop_ = Captioned<QPushButton>("CommandStop", "S&top", "Stop Searching");
    commandStop_->setEnabled(false);
    commandClose_ = Captioned<QPushButton>("CommandClose", "&Close", "Close this window");
    commandHelp_ = Captioned<QPushButton>("CommandHelp", "&Help", "Displays help file");

    auto *column = new QVBoxLayout;
    column->addWidget(commandStart_);
    column->addWidget(commandStop_);
    column->addStretch();
    column->addWidget(commandClose_);
    column->addWidget(commandHelp_);
    return column;
}

void FormSearch::SetTabOrder() {
    const std::array<QWidget *, 11> order = {optionAddressRange_[0],
                                             optionAddressRange_[1],
                                             textAddressRange_[fromBox],
                                             textAddressRange_[toBox],
                                             checkVaryCommSettings_,
                                             commandStart_,
                                             commandStop_,
                                             listViewResults_,
                                             checkUseSelectedCommSettings_,
                                             commandClose_,
                                             commandHelp_};
    for (std::size_t i = 1; i < order.size(); ++i) {
        setTabOrder(order[i - 1], order[i]);
    }
}

void FormSearch::ConnectControls() {
    connect(optionAddressRange_[0], &QRadioButton::toggled, this, [this](bool all) {
        for (QLineEdit *box : textAddressRange_) {
            box->setEnabled(!all);
        }
    });
    connect(commandStart_, &QPushButton::clicked, this, &FormSearch::Start);
    connect(commandStop_, &QPushButton::clicked, &search_, &DeviceSearch::Stop);
    connect(commandClose_, &QPushButton::clicked, this, &FormSearch::reject);
    // Enter on a picked result must not start a search, which would clear it.
    connect(checkUseSelectedCommSettings_, &QCheckBox::toggled, this,
            [this](bool picked) { (picked ? commandClose_ : commandStart_)->setDefault(true); });
    connect(listViewResults_, &QTreeWidget::itemSelectionChanged, this, &FormSearch::FollowSelection);
    connect(listViewResults_, &QTreeWidget::itemClicked, this, &FormSearch::UseSelected);
}

void FormSearch::ConnectSearch() {
    connect(&search_, &DeviceSearch::Started, this, &FormSearch::ShowStarted);
    connect(&search_, &DeviceSearch::Probing, this, &FormSearch::ShowProbe);
    // Queued, so that the probe doesn't wait until the bar is painted.
    connect(&search_, &DeviceSearch::Progressed, this, &FormSearch::ShowProgress, Qt::QueuedConnection);
    connect(&search_, &DeviceSearch::DeviceFound, this, &FormSearch::AddResult);
    connect(&search_, &DeviceSearch::Ended, this, &FormSearch::ShowEnded);
    connect(&search_, &DeviceSearch::BrokenOff, this, &FormSearch::ShowBrokenOff);
    connect(&search_, &DeviceSearch::ProbeRefused, this, [this](LinkStatus status) {
        Warn(dialogs_, QStringLiteral("Read Error: %1").arg(CodeOf(status)));
    });
}

void FormSearch::Start() {
    // A button may be pressed without leaving the box first.
    if (!optionAddressRange_[0]->isChecked()) {
        for (std::size_t i = 0; i < textAddressRange_.size(); ++i) {
            if (!AddressRangeIsValid(i)) {
                textAddressRange_[i]->setFocus();
                TextBoxFunctions::SelectAllText(*textAddressRange_[i]);
                return;
            }
        }
    }
    if (!search_.Start()) {
        const LinkStatus status = link_.Mbaxp1().LastError();
        WarnInDetail(dialogs_, link_.OpenFailureText(), link_.OpenFailureDetail());
        if (IsRefusedSetting(status)) {
            ShowBrokenOff(status);
        }
    }
}

void FormSearch::ShowStarted() {
    setCursor(Qt::BusyCursor);
    const bool hadFocus = commandStart_->hasFocus();
    commandStop_->setEnabled(true);
    if (hadFocus) {
        commandStop_->setFocus();
    }
    commandStart_->setEnabled(false);
    listViewResults_->clear();
    checkUseSelectedCommSettings_->setChecked(false);
    checkUseSelectedCommSettings_->setEnabled(false);
    listViewResults_->EmptyText(QStringLiteral("No device has answered yet."));
    labelDevicesFound_->setText(QStringLiteral("Devices Found: 0"));
    progress_->show();
    timeLeft_->show();
}

void FormSearch::ShowProbe() {
    ShowWhere(QStringLiteral("Searching %1").arg(search_.SearchAddress()), QString());
}

void FormSearch::ShowWhere(const QString &words, const QString &toolTip) {
    labelSearchStatus_->setText(words);
    labelSearchStatus_->setToolTip(toolTip);
    labelSearchStatus_->show();
    labelCommStatus_->setText(CommStatus());
    labelCommStatus_->show();
}

QString FormSearch::CommStatus() const {
    return zentrova_.BaudRateString(search_.SearchBaud()) + u',' +
           zentrova_.ParityStopString(search_.SearchParityStop());
}

// Arrives queued, so the search may have ended meanwhile.
void FormSearch::ShowProgress(int probesDone, const SearchWork &left) {
    if (!search_.IsSearching()) {
        return;
    }
    progress_->setMaximum(std::max(probesDone + left.probes, 1));
    progress_->setValue(probesDone);
    timeLeft_->setText(TimeLeftText(left.milliseconds));
}

void FormSearch::AddResult(const CommSettings &place) {
    const int count = search_.DevicesFound();
    labelDevicesFound_->setText(QStringLiteral("Devices Found: %1").arg(count));
    auto *row = new QTreeWidgetItem({QString::number(place.address), zentrova_.BaudRateString(place.baud),
                                     zentrova_.ParityStopString(place.parityStop)});
    row->setData(AddressColumn, tagRole, QStringLiteral("Key%1").arg(count));
    row->setData(BaudColumn, tagRole, place.baud);
    row->setData(ParityStopColumn, tagRole, place.parityStop);
    listViewResults_->addTopLevelItem(row);
}

void FormSearch::ShowEnded() {
    const bool hadFocus = commandStop_->hasFocus();
    commandStart_->setEnabled(true);
    if (hadFocus) {
        commandStart_->setFocus();
    }
    commandStop_->setEnabled(false);
    labelSearchStatus_->hide();
    progress_->hide();
    timeLeft_->hide();
    listViewResults_->EmptyText(QStringLiteral("No device was found."));
    unsetCursor();
}

void FormSearch::ShowBrokenOff(LinkStatus status) {
    ShowEnded();
    const QString cause =
        IsRefusedSetting(status) ? QStringLiteral("Setting refused") : QStringLiteral("Adapter lost");
    ShowWhere(QStringLiteral("%1 at %2").arg(cause).arg(search_.SearchAddress()),
              QStringLiteral("Error %1. %2").arg(CodeOf(status)).arg(MbaxpErrorDesc(status)));
    listViewResults_->EmptyText(QStringLiteral("The search broke off at address %1, %2.")
                                    .arg(search_.SearchAddress())
                                    .arg(CommStatus()));
}

void FormSearch::FollowSelection() {
    if (listViewResults_->selectedItems().isEmpty()) {
        checkUseSelectedCommSettings_->setChecked(false);
        checkUseSelectedCommSettings_->setEnabled(false);
    } else {
        UseSelected();
    }
}

void FormSearch::UseSelected() {
    const QList<QTreeWidgetItem *> selected = listViewResults_->selectedItems();
    if (!selected.isEmpty() && !selected.constFirst()->text(AddressColumn).isEmpty()) {
        checkUseSelectedCommSettings_->setEnabled(true);
        checkUseSelectedCommSettings_->setChecked(true);
    }
}

// Called for every way to close the dialog.
void FormSearch::done(int result) {
    Unload();
    QDialog::done(result);
}

void FormSearch::Unload() {
    search_.Abandon();
    unsetCursor();
    const QList<QTreeWidgetItem *> selected = listViewResults_->selectedItems();
    if (checkUseSelectedCommSettings_->isChecked() && checkUseSelectedCommSettings_->isEnabled() &&
        !selected.isEmpty()) {
        const QTreeWidgetItem &row = *selected.constFirst();
        used_ = CommSettings{.port = search_.SearchPort(),
                             .baud = ToInt16(row.data(BaudColumn, tagRole).toInt()),
                             .parityStop = ToInt16(row.data(ParityStopColumn, tagRole).toInt()),
                             .address = ToInt16(ToNumber(row.text(AddressColumn)))};
    }
}

bool FormSearch::AddressRangeIsValid(std::size_t box) {
    const auto isNumber = [this](std::size_t i) { return IsNumeric(textAddressRange_[i]->text()); };
    const auto number = [this](std::size_t i) { return ToNumber(textAddressRange_[i]->text()); };
    if (!isNumber(box) || number(box) < lowestAddress || number(box) > highestAddress) {
        Warn(dialogs_, QStringLiteral("Please enter a numeric value from 1 to 247."),
             QStringLiteral("Invalid Range"));
        return false;
    }
    if (isNumber(fromBox) && isNumber(toBox) && number(fromBox) > number(toBox)) {
        Warn(dialogs_, QStringLiteral("The From Address Range must be less than or equal to the To Range."));
        return false;
    }
    return true;
}

// Reads the boxes, which may be changed during a search. While a text isn't a number, mostly for a moment
// only, the box's last number counts.
DeviceSearch::AddressRange FormSearch::AddressRange() {
    if (optionAddressRange_[0]->isChecked()) {
        return {.bottom = lowestAddress, .top = highestAddress};
    }
    for (std::size_t i = 0; i < textAddressRange_.size(); ++i) {
        const QString text = textAddressRange_[i]->text();
        if (IsNumeric(text) && std::abs(ToNumber(text)) < std::numeric_limits<std::int16_t>::max()) {
            addressRange_[i] = ToInt16(ToNumber(text));
        }
    }
    return {.bottom = addressRange_[fromBox], .top = addressRange_[toBox]};
}

} // namespace ztv

#include "tabs/ui/CheckoutPage.h"

#include "model/ParamDefines.h"
#include "model/ValueState.h"
#include "tabs/TabTable.h"
#include "tabs/ui/StillFrame.h"
#include "widgets/Colours.h"
#include "widgets/Controls.h"
#include "widgets/WhyDisabled.h"

#include <QApplication>
#include <QFontInfo>
#include <QLabel>
#include <QRadioButton>
#include <QStyle>
#include <QVBoxLayout>
#include <algorithm>

namespace ztv {

using ImageListCheckout::Key;

namespace {

// Pixels at factor 1.
constexpr int voltageWidth = 90;
constexpr int gap = 10;
constexpr int smallGap = 6; // narrow, so that larger fonts fit into the smallest window
constexpr int leastNumberHeight = 64;

QGroupBox *NewFrame(const char *name, const char *caption) {
    return Controls::Named(new StillFrame(QString::fromLatin1(caption)), name);
}

QLabel *NewLabel(const char *caption) {
    return new QLabel(QString::fromLatin1(caption));
}

QLabel *NewInputLabel(int index, const char *caption) {
    return Controls::Named(NewLabel(caption), Controls::Member("LabelInputs", index));
}

QLineEdit *NewVoltage(const char *name, const char *spokenName) {
    auto *box = Controls::Named(new QLineEdit, name);
    box->setAccessibleName(QString::fromLatin1(spokenName));
    box->setAlignment(Qt::AlignCenter);
    box->setEnabled(false);
    Colours::KeepLegibleWhileDisabled(*box, Colours::Legible::Reading);
    return box;
}

void AddOption(QButtonGroup &group, const char *array, const char *caption) {
    const auto index = static_cast<int>(group.buttons().size());
    group.addButton(Controls::Captioned<QRadioButton>(Controls::Member(array, index), caption), index);
}

// Lets Tab enter a group at its selected option, or at the first one if none is selected, and never at an
// option that the next key would select by mistake.
void ReachBySelected(const QButtonGroup &group) {
    const QList<QAbstractButton *> options = group.buttons();
    const QAbstractButton *reached =
        group.checkedButton() != nullptr ? group.checkedButton() : options.first();
    for (QAbstractButton *option : options) {
        option->setFocusPolicy(option == reached ? Qt::StrongFocus : Qt::ClickFocus);
    }
}

// Called at each poll; repaints only on a change.
void Show(QLineEdit &box, const QString &text) {
    if (box.text() != text) {
        box.setText(text);
    }
}

void AddSwitch(QGridLayout &grid, int row, SwitchButton *button) {
    grid.addWidget(NewLabel("Off"), row, 1, Qt::AlignRight | Qt::AlignVCenter);
    grid.addWidget(button, row, 2);
    grid.addWidget(NewLabel("On"), row, 3);
}

void AddIndicator(QGridLayout &grid, int row, Indicator *indicator, QLabel *label) {
    grid.addWidget(indicator, row, 0);
    grid.addWidget(label, row, 1);
}

} // namespace

CheckoutPage::CheckoutPage(ClassZentrova &zentrova, QLineEdit &manualOutput, std::int16_t manualOutputTag,
                           QWidget *parent)
    : TabPage(Tab::Checkout, parent),
      zentrova_(zentrova),
      manualOutput_(manualOutput),
      manualOutputTag_(manualOutputTag),
      control_(zentrova) {
    // The order of construction is the tab order.
    auto *relays = BuildRelays();
    auto *clkOut = BuildClkOut();
    auto *digInputs = BuildDigInputs();
    auto *clockSel = BuildClockSel();
    auto *analogOut = BuildAnalogOut();
    auto *distance = BuildDistance();
    auto *analogInput = BuildAnalogInput();
    commandReInit_ = Controls::Captioned<QPushButton>("CommandReInit", "Re-Initialize");
    connect(commandReInit_, &QPushButton::clicked, this, &CheckoutPage::ReInitClick);

    auto *side = new QVBoxLayout;
    side->addWidget(analogInput);
    side->addStretch();
    side->addWidget(commandReInit_);

    auto *grid = new QGridLayout(this);
    grid_ = grid;
    grid->addWidget(relays, 0, 0);
    grid->addWidget(clkOut, 1, 0);
    grid->addWidget(digInputs, 0, 1);
    grid->addWidget(clockSel, 1, 1);
    grid->addWidget(analogOut, 0, 2, 2, 1);
    grid->addWidget(distance, 2, 0, 1, 2);
    grid->addLayout(side, 2, 2);
    // Gives the extra room of a larger window to the distance, which must be readable from afar.
    grid->setColumnStretch(0, 1);
    grid->setColumnStretch(1, 1);
    grid->setRowStretch(2, 1);
    ScaleLayouts();
}

QGroupBox *CheckoutPage::BuildRelays() {
    QGroupBox *frame = NewFrame("FrameRelays", "Relays");
    auto *grid = new QGridLayout(frame);
    for (int i = 0; i < 2; ++i) {
        const QString number = QString::number(i + 1);
        auto *relay = Controls::Named(new SwitchButton(QStringLiteral("Relay ") + number, frame),
                                      Controls::Member("imgRelay", i));
        grid->addWidget(Controls::Named(new QLabel(number), Controls::Member("lblRelay1", i)), i, 0);
        AddSwitch(*grid, i, relay);
        connect(relay, &SwitchButton::clicked, this, [this, i] { control_.ToggleRelay(i); });
        imgRelay_[static_cast<std::size_t>(i)] = relay;
    }
    grid->setColumnStretch(4, 1);
    return frame;
}

QGroupBox *CheckoutPage::BuildClkOut() {
    QGroupBox *frame = NewFrame("FrameClkOut", "Clock Out");
    auto *grid = new QGridLayout(frame);
    imgClkOut_ = Controls::Named(new SwitchButton(frame->title(), frame), "imgClkOut");
    AddSwitch(*grid, 0, imgClkOut_);
    clkOutGrid_ = grid;
    grid->setColumnStretch(4, 1);
    connect(imgClkOut_, &SwitchButton::clicked, this, &CheckoutPage::ClkOutClick);
    return frame;
}

QGroupBox *CheckoutPage::BuildDigInputs() {
    QGroupBox *frame = NewFrame("FrameDigInputs", "Digital Inputs");
    auto *grid = new QGridLayout(frame);
    QLabel *teach = NewInputLabel(0, "Teach");
    imageTeachInput_ = Controls::Named(new Indicator(teach->text(), frame), "ImageTeachInput");
    AddIndicator(*grid, 0, imageTeachInput_, teach);
    QLabel *clock = NewInputLabel(1, "Ext Clk In");
    imageExtClkInStatus_ = Controls::Named(new Indicator(clock->text(), frame), "ImageExtClkInStatus");
    AddIndicator(*grid, 1, imageExtClkInStatus_, clock);
    grid->setColumnStretch(1, 1);
    return frame;
}

QGroupBox *CheckoutPage::BuildClockSel() {
    QGroupBox *frame = NewFrame("FrameClockSel", "Clock Select");
    optionClockSel_ = new QButtonGroup(this);
    auto *column = new QVBoxLayout(frame);
    for (const char *caption : {"Internal", "External"}) {
        AddOption(*optionClockSel_, "OptionClockSel", caption);
    }
    for (QAbstractButton *option : optionClockSel_->buttons()) {
        option->setEnabled(false);
        WhyDisabled::Explain(*option, QStringLiteral("Shows the sensor's clock; it can't be selected here."));
        Colours::KeepLegibleWhileDisabled(*option, Colours::Legible::Reading);
        column->addWidget(option);
    }
    return frame;
}

QGroupBox *CheckoutPage::BuildAnalogOut() {
    QGroupBox *frame = NewFrame("FrameAnalogOut", "Analog Output");
    optionAnalogOut_ = new QButtonGroup(this);
    auto *options = new QVBoxLayout;
    for (const CheckoutOptions::Option &option : CheckoutOptions::AnalogOut) {
        AddOption(*optionAnalogOut_, "OptionAnalogOut", option.caption);
        options->addWidget(optionAnalogOut_->buttons().last());
    }
    ReachBySelected(*optionAnalogOut_);
    // Reacts only to a new selection: not to setting the selected option again, and not to clearing one.
    connect(optionAnalogOut_, &QButtonGroup::idToggled, this, [this](int index, bool selected) {
        if (selected) {
            AnalogOutClick(index);
        }
    });

    textCheckoutVoltageOut_ = NewVoltage("TextCheckoutVoltageOut", "Analog Output");
    commandNext_ = Controls::Captioned<QPushButton>("CommandNext", "&Next");
    CountFrom(0);
    connect(commandNext_, &QPushButton::clicked, this, &CheckoutPage::NextClick);
    auto *side = new QVBoxLayout;
    side->addWidget(textCheckoutVoltageOut_);
    side->addStretch();
    side->addWidget(commandNext_);

    auto *row = new QHBoxLayout(frame);
    row->addLayout(options, 1);
    row->addLayout(side);
    return frame;
}

QGroupBox *CheckoutPage::BuildAnalogInput() {
    QGroupBox *frame = NewFrame("FrameAnalogInput", "Analog Input");
    textCheckoutVoltageIn_ = NewVoltage("TextCheckoutVoltageIn", "Analog Input");
    auto *row = new QHBoxLayout(frame);
    row->addWidget(textCheckoutVoltageIn_, 0, Qt::AlignRight);
    return frame;
}

QGroupBox *CheckoutPage::BuildDistance() {
    QGroupBox *frame = NewFrame("FrameDistance", "Distance");
    labelDist_ = Controls::Named(new LargeNumber(QStringLiteral("420.00\""), frame), "LabelDist");

    auto *echo = new QGridLayout;
    echo_ = echo;
    QLabel *received = NewInputLabel(2, "Echo Received");
    imageNoEcho_ = Controls::Named(new Indicator(received->text(), frame), "ImageNoEcho");
    AddIndicator(*echo, 0, imageNoEcho_, received);
    echo->setColumnStretch(1, 1);
    auto *side = new QVBoxLayout;
    side->addLayout(echo);
    side->addStretch();
    side->addWidget(BuildDistRange());

    auto *row = new QHBoxLayout(frame);
    distanceRow_ = row;
    row->addWidget(labelDist_, 1);
    row->addLayout(side);
    return frame;
}

QGroupBox *CheckoutPage::BuildDistRange() {
    QGroupBox *frame = NewFrame("FrameDistRange", "Range");
    optionRange_ = new QButtonGroup(this);
    auto *column = new QVBoxLayout(frame);
    for (const CheckoutOptions::Option &option : CheckoutOptions::Range) {
        AddOption(*optionRange_, "OptionRange", option.caption);
        column->addWidget(optionRange_->buttons().last());
    }
    ReachBySelected(*optionRange_);
    connect(optionRange_, &QButtonGroup::idToggled, this, [this](int index, bool selected) {
        if (selected) {
            ReachBySelected(*optionRange_);
            control_.SetRange(index);
        }
    });
    return frame;
}

// Returns the size that the content needs in the present font. Starts with the innermost frames, which
// otherwise tell their new size only from the event loop.
QSize CheckoutPage::LeastContent() {
    const auto frames = findChildren<StillFrame *>();
    std::for_each(frames.rbegin(), frames.rend(), [](const StillFrame *frame) {
        frame->layout()->invalidate();
        frame->layout()->activate();
    });
    layout()->activate();
    return layout()->totalMinimumSize();
}

// Sets the main form's font at the page's scale, reduced if the page's content doesn't fit.
void CheckoutPage::FitFont() {
    QFont fitting = Scale().Font(parentWidget() == nullptr ? QApplication::font() : parentWidget()->font());
    for (int pixels = QFontInfo(fitting).pixelSize();; --pixels) {
        setFont(fitting);
        const QSize least = LeastContent();
        if (pixels <= Scale().LeastLegible() || (least.width() <= width() && least.height() <= height())) {
            break;
        }
        fitting.setPixelSize(pixels - 1);
    }
}

void CheckoutPage::ScaleLayouts() {
    const PageScale &scale = Scale();
    const int around = scale.Pixels(gap);
    const int narrow = scale.Pixels(smallGap);
    const int between = scale.Pixels(style()->pixelMetric(QStyle::PM_LayoutVerticalSpacing));
    for (auto *frame : findChildren<StillFrame *>()) { // a layout within a layout has the same spacing
        frame->layout()->setSpacing(between);
        frame->layout()->setContentsMargins(around, narrow, around, narrow);
    }
    grid_->setContentsMargins(0, narrow, 0, 0);
    grid_->setSpacing(around);
    echo_->setHorizontalSpacing(narrow);
    distanceRow_->setSpacing(2 * around);
    labelDist_->setMinimumHeight(scale.Pixels(leastNumberHeight));
    for (QWidget *widget :
         std::initializer_list<QWidget *>{textCheckoutVoltageOut_, textCheckoutVoltageIn_, commandNext_}) {
        widget->setFixedWidth(scale.Pixels(voltageWidth));
    }
    for (Indicator *indicator : {imageTeachInput_, imageExtClkInStatus_, imageNoEcho_}) {
        indicator->Rescale(scale);
    }
    for (SwitchButton *button : {imgRelay_[0], imgRelay_[1], imgClkOut_}) {
        button->Rescale(scale);
    }
}

void CheckoutPage::Fit() {
    if (fitted_ != Scale()) {
        fitted_ = Scale();
        ScaleLayouts();
    }
    FitFont();
    // Aligns with the relays above, which start with a number.
    clkOutGrid_->setColumnMinimumWidth(0, fontMetrics().horizontalAdvance(u'1') +
                                              clkOutGrid_->horizontalSpacing());
}

void CheckoutPage::Entered() {
    SelectAnalogOut(CheckoutOptions::FollowsDistance);
}

void CheckoutPage::SelectAnalogOut(int index) {
    optionAnalogOut_->button(index)->setChecked(true);
}

// Publishes the counter as the button's property "Tag".
void CheckoutPage::CountFrom(int option) {
    counter_ = option;
    commandNext_->setProperty("Tag", QString::number(option));
}

void CheckoutPage::AnalogOutClick(int index) {
    CountFrom(index);
    ReachBySelected(*optionAnalogOut_);
    control_.SetAnalogOut(index);
}

void CheckoutPage::NextClick() {
    CountFrom(CheckoutControl::NextOption(counter_));
    SelectAnalogOut(counter_);
}

// Deliberate: drives the output to full scale first.
void CheckoutPage::ClkOutClick() {
    SelectAnalogOut(CheckoutOptions::FullScale);
    control_.ToggleClockOut();
}

void CheckoutPage::ReInitClick() {
    ClearRange();
    SelectAnalogOut(CheckoutOptions::FollowsDistance);
    control_.Reinitialise();
}

void CheckoutPage::ClearRange() {
    optionRange_->setExclusive(false); // an exclusive group keeps one selected
    for (QAbstractButton *option : optionRange_->buttons()) {
        option->setChecked(false);
    }
    optionRange_->setExclusive(true);
    ReachBySelected(*optionRange_);
}

Key CheckoutPage::Lit(std::int16_t tag, Key key) const {
    if (zentrova_.ParamValue(tag) == 1) {
        return key;
    }
    return key == Key::On ? Key::Off : Key::Gray;
}

void CheckoutPage::ShowState(ValueState state) {
    const bool live = state == ValueState::Live;
    for (Indicator *indicator : {imageTeachInput_, imageExtClkInStatus_, imageNoEcho_}) {
        indicator->Dim(!live);
    }
    for (SwitchButton *relay : imgRelay_) {
        relay->Dim(!live);
    }
    labelDist_->Dim(!live);
    for (QLineEdit *voltage : {textCheckoutVoltageOut_, textCheckoutVoltageIn_}) {
        Colours::KeepLegibleWhileDisabled(*voltage,
                                          live ? Colours::Legible::Reading : Colours::Legible::Entry);
    }
}

void CheckoutPage::UpdateDisplay() {
    const auto text = [this](std::int16_t tag) {
        return zentrova_.FormatRaw(zentrova_.ParamValue(tag), tag);
    };
    Show(manualOutput_, text(manualOutputTag_));
    optionClockSel_->button(zentrova_.ParamValue(ParamDefines::ClockSelect) == 1 ? 1 : 0)->setChecked(true);
    imageTeachInput_->Picture(Lit(ParamDefines::TeachInput, Key::Red));
    imageExtClkInStatus_->Picture(Lit(ParamDefines::ExternalClockInput, Key::Red));
    // Shows the relays' measured states, not the commanded ones.
    for (std::size_t i = 0; i < imgRelay_.size(); ++i) {
        imgRelay_[i]->Picture(
            Lit(static_cast<std::int16_t>(ParamDefines::Relay1State + static_cast<int>(i)), Key::On));
    }
    imgClkOut_->Picture(Lit(ParamDefines::ClockOut, Key::On));
    labelDist_->Show(text(ParamDefines::ActualDistance));
    imageNoEcho_->Picture(Lit(ParamDefines::EchoReceived, Key::Green));
    Show(*textCheckoutVoltageOut_, text(ParamDefines::OutputVoltage));
    Show(*textCheckoutVoltageIn_, text(ParamDefines::AnalogInputVoltage));
}

} // namespace ztv

#include "setup/ui/FormTransmitDelay.h"

#include "model/ParamDefines.h"
#include "setup/TransmitDelay.h"
#include "support/Numbers.h"
#include "widgets/Colours.h"
#include "widgets/Controls.h"
#include "widgets/EntryFocus.h"
#include "widgets/FormHelp.h"
#include "widgets/TextBoxFunctions.h"

#include <QApplication>
#include <QFocusEvent>
#include <QFrame>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QScopedValueRollback>
#include <QVBoxLayout>
#include <algorithm>

namespace ztv {

namespace {

constexpr int textWidth = 440;
constexpr int boxWidth = 120;
constexpr int margin = 12;
constexpr int decimalsOfRanges = 2;
constexpr int decimalsOfDelays = 0;

struct UnitText {
    const char *shown; // UTF-8
    const char *spoken;
};

// In the order of Unit. A count of the delay is a microsecond; its high word counts 65536 of them.
constexpr UnitText unitTexts[] = {
    {"inches", "inches"}, {"\u00b5s", "microseconds"}, {"\u00d7 65536 \u00b5s", "times 65536 microseconds"}};

constexpr char savesOnClose[] =
    "Closing this window makes the sensor save all its settings, even if nothing was written here.";
constexpr char savesNothing[] = "Closing this window saves nothing in the sensor.";
constexpr char offlineSavesNothing[] = "Not connected: closing this window saves nothing in a sensor.";

QFrame *NewRule() {
    auto *rule = new QFrame;
    rule->setFrameShape(QFrame::HLine);
    rule->setFrameShadow(QFrame::Sunken);
    return rule;
}

// Completes a click in `window` whose release the message box received.
void FinishClickIn(const QWidget &window) {
    if (QGuiApplication::mouseButtons() != Qt::NoButton) {
        return;
    }
    if (auto *box = qobject_cast<QLineEdit *>(window.focusWidget())) {
        TextBoxFunctions::SelectAllText(*box);
    } else if (auto *button = qobject_cast<QAbstractButton *>(window.focusWidget());
               button != nullptr && button->isDown()) {
        button->click();
    }
}

} // namespace

FormTransmitDelay::FormTransmitDelay(ClassZentrova &zentrova, const ParameterLink &link, UserDialogs &dialogs,
                                     ClassMyHtmlHelp &help, QWidget *parent)
    : QDialog(parent),
      zentrova_(zentrova),
      dialogs_(dialogs),
      online_(link.PortIsOpen()) {
    Controls::Named(this, "FormTransmitDelay");
    setWindowTitle(QStringLiteral("Transmit Delay Calculator"));
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(margin, margin, margin, margin);
    AddExplanation(*column, 0,
                   "In multi-unit installations, the Transmit Delay on the master unit must be set long "
                   "enough to allow all slave units to transmit and receive before the master unit "
                   "re-initiates its own transmission.");
    column->addWidget(NewRule());
    BuildEntries(*column);
    column->addWidget(NewRule());
    BuildResults(*column);
    column->addWidget(NewRule());
    BuildButtons(*column, help);
    column->setSizeConstraint(QLayout::SetFixedSize);

    RecalculateDelay();
    saveSettings_->setEnabled(online_);
    ShowNote();
}

void FormTransmitDelay::AddExplanation(QVBoxLayout &column, int index, const char *text) {
    auto *label = Controls::Named(new QLabel(QString::fromLatin1(text)), Controls::Member("Label4", index));
    label->setWordWrap(true);
    label->setMinimumWidth(textWidth);
    column.addWidget(label);
}

void FormTransmitDelay::AddRow(QVBoxLayout &column, const char *labelName, const char *caption,
                               QLineEdit &box, Unit unit) {
    auto *label = Controls::Named(new QLabel(QString::fromLatin1(caption)), labelName);
    label->setBuddy(&box);
    box.setAccessibleName(label->text().simplified());
    box.setFixedWidth(boxWidth);
    box.setAlignment(Qt::AlignRight);
    auto *row = new QHBoxLayout;
    row->addWidget(label, 1);
    row->addWidget(&box);
    row->addWidget(NewUnitLabel(unit, box));
    column.addLayout(row);
}

// All have one width, so that the boxes are aligned.
QLabel *FormTransmitDelay::NewUnitLabel(Unit unit, QLineEdit &box) {
    const UnitText &text = unitTexts[static_cast<std::size_t>(unit)];
    box.setAccessibleDescription(QString::fromLatin1(text.spoken));
    auto *label =
        Controls::Named(new QLabel(QString::fromUtf8(text.shown)), box.objectName() + QStringLiteral("Unit"));
    int width = 0;
    for (const UnitText &other : unitTexts) {
        width = std::max(width, label->fontMetrics().horizontalAdvance(QString::fromUtf8(other.shown)));
    }
    label->setFixedWidth(width);
    return label;
}

void FormTransmitDelay::BuildEntries(QVBoxLayout &column) {
    sumOfRanges_ = NewEntry("TextSumOfRanges", "0.00");
    sumOfDelays_ = NewEntry("TextSumOfDelays", "0");
    AddExplanation(column, 1,
                   "Add up each of the Max Range (parameter 25) values in each of the slave units and enter "
                   "the total value in the field below.");
    AddRow(column, "Label1", "Sum of  Max Range values", *sumOfRanges_, Unit::Inches);
    column.addSpacing(margin);
    AddExplanation(column, 3,
                   "Add up each of the Transmit Delay Low (parameter 21) values in each of the slave units "
                   "and enter the total value in the field below.");
    AddRow(column, "Label5", "Sum of Delay values", *sumOfDelays_, Unit::Microseconds);
}

QLineEdit *FormTransmitDelay::NewEntry(const char *name, const char *text) {
    auto *box = Controls::Named(new QLineEdit(QString::fromLatin1(text), this), name);
    EntryFocus::SelectAllOnEntry(*box);
    EntryFocus::ValidateOnLeave(*box, [this, box] {
        CheckLeftBox(*box);
        return true; // the focus leaves in any case
    });
    box->installEventFilter(this);
    connect(box, &QLineEdit::textChanged, this, &FormTransmitDelay::RecalculateDelay);
    return box;
}

void FormTransmitDelay::BuildResults(QVBoxLayout &column) {
    actualDelay_ = Controls::Named(new QLabel, "LabelActualDelay");
    auto *caption = new QLabel(QStringLiteral("Total delay"));
    actualDelay_->setAccessibleDescription(caption->text());
    actualDelay_->setAlignment(Qt::AlignRight);
    QFont bold = actualDelay_->font();
    bold.setBold(true);
    actualDelay_->setFont(bold);
    auto *row = new QHBoxLayout;
    row->addWidget(caption, 1);
    row->addWidget(actualDelay_);
    column.addLayout(row);
    column.addSpacing(margin);

    AddExplanation(
        column, 2,
        "The values below need to be entered into the Transmit Delay settings of the Master unit.");
    low_ = Controls::Named(new QLineEdit(this), "TextTransmitDelayLow");
    high_ = Controls::Named(new QLineEdit(this), "TextTransmitDelayHigh");
    for (QLineEdit *box : {low_, high_}) {
        box->setEnabled(false);
        Colours::KeepLegibleWhileDisabled(*box);
    }
    AddRow(column, "Label2", "(21) Master Transmit Delay (low)", *low_, Unit::Microseconds);
    AddRow(column, "Label3", "(22) Master Transmit Delay (high)", *high_, Unit::HighWords);
}

void FormTransmitDelay::BuildButtons(QVBoxLayout &column, ClassMyHtmlHelp &help) {
    const auto newButton = [this](const char *name, const char *caption) {
        auto *button = Controls::Captioned<QPushButton>(name, caption, this);
        button->setAutoDefault(false);
        return button;
    };
    write_ =
        newButton("CommandSetTransmitDelayValues", "Write above values to the Transmit Delay parameters");
    saveSettings_ = Controls::Captioned<QCheckBox>("chkSaveSettings",
                                                   "Save Changes in Zentrova when window closes.", this);
    saveSettings_->setToolTip(QStringLiteral("Save parameter changes in Zentrova"));
    saveSettings_->setChecked(true);
    auto *helpButton = newButton("CommandHelp", "Help");
    FormHelp::Offer(*this, help.Topic(HelpContextID), helpButton);
    auto *close = newButton("CommandClose", "Close");
    connect(write_, &QPushButton::clicked, this, &FormTransmitDelay::SetTransmitDelayValues);
    connect(close, &QPushButton::clicked, this, &FormTransmitDelay::reject);

    column.addWidget(write_);
    column.addWidget(saveSettings_);
    AddNote(column);
    column.addSpacing(margin);
    auto *row = new QHBoxLayout;
    row->addStretch();
    row->addWidget(helpButton);
    row->addWidget(close);
    column.addLayout(row);
}

// Keeps the room of its longest text, so that nothing moves.
void FormTransmitDelay::AddNote(QVBoxLayout &column) {
    note_ = Controls::Named(new QLabel(QString::fromLatin1(savesOnClose), this), "LabelSaveNote");
    note_->setWordWrap(true);
    note_->setMinimumWidth(textWidth);
    note_->setMinimumHeight(note_->heightForWidth(textWidth));
    note_->setAlignment(Qt::AlignTop);
    column.addWidget(note_);
    connect(saveSettings_, &QCheckBox::toggled, this, &FormTransmitDelay::ShowNote);
}

void FormTransmitDelay::ShowNote() {
    note_->setText(QString::fromLatin1(!online_                     ? offlineSavesNothing
                                       : saveSettings_->isChecked() ? savesOnClose
                                                                    : savesNothing));
    saveSettings_->setAccessibleDescription(note_->text());
}

void FormTransmitDelay::RecalculateDelay() {
    const std::optional<TransmitDelay::Results> results =
        TransmitDelay::Calculate(sumOfRanges_->text(), sumOfDelays_->text());
    if (results) {
        actualDelay_->setText(results->actualDelay);
    }
    low_->setText(results ? results->low : QString());
    high_->setText(results ? results->high : QString());
    write_->setEnabled(online_ && ResultsFit());
}

bool FormTransmitDelay::ResultsFit() const {
    return TransmitDelay::RawValue(zentrova_, low_->text(), ParamDefines::TransmitDelayLow) &&
           TransmitDelay::RawValue(zentrova_, high_->text(), ParamDefines::TransmitDelayHigh);
}

void FormTransmitDelay::CheckLeftBox(const QLineEdit &box) {
    if (IsNumeric(box.text())) {
        return;
    }
    const bool byMouse = QGuiApplication::mouseButtons() != Qt::NoButton;
    Warn(dialogs_, QStringLiteral("Please enter a numeric value."));
    if (byMouse) {
        QMetaObject::invokeMethod(
            this, [this] { FinishClickIn(*this); }, Qt::QueuedConnection);
    }
}

bool FormTransmitDelay::eventFilter(QObject *watched, QEvent *event) {
    if (event->type() == QEvent::FocusOut &&
        !EntryFocus::IsElsewhere(static_cast<QFocusEvent *>(event)->reason())) {
        auto &box = watched == sumOfRanges_ ? *sumOfRanges_ : *sumOfDelays_;
        box.setText(ReformatDecimals(box.text(), &box == sumOfRanges_ ? decimalsOfRanges : decimalsOfDelays));
    }
    return QDialog::eventFilter(watched, event);
}

// Makes Enter press only the button that has the focus: a user who ends an entry with Enter wants neither to
// write nor to close the window.
void FormTransmitDelay::keyPressEvent(QKeyEvent *event) {
    if (event->key() != Qt::Key_Return && event->key() != Qt::Key_Enter) {
        QDialog::keyPressEvent(event);
    } else if (auto *button = qobject_cast<QPushButton *>(focusWidget())) {
        button->click();
    }
}

// Reads both values first: the question turns the event loop.
void FormTransmitDelay::SetTransmitDelayValues() {
    using namespace ParamDefines;
    const auto low = TransmitDelay::RawValue(zentrova_, low_->text(), TransmitDelayLow);
    const auto high = TransmitDelay::RawValue(zentrova_, high_->text(), TransmitDelayHigh);
    if (!low || !high || asking_) {
        return;
    }
    const QScopedValueRollback<bool> guard(asking_, true);
    if (!Confirm(dialogs_, QStringLiteral("Are you sure? This should only be done on the Master Unit "
                                          "in a multi-unit installation."))) {
        return;
    }
    zentrova_.ParamValue(TransmitDelayLow, *low);
    zentrova_.ParamValue(TransmitDelayHigh, *high);
    saveSettings_->setChecked(true);
}

void FormTransmitDelay::done(int result) {
    if (asking_) {
        return;
    }
    // Deliberate: closing makes the sensor save, even if nothing was changed.
    if (saveSettings_->isEnabled() && saveSettings_->isChecked()) {
        zentrova_.ParamValue(ParamDefines::SaveCommand, ParamDefines::StoreSettings);
    }
    QDialog::done(result);
}

} // namespace ztv

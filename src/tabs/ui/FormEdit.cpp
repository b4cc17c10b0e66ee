#include "tabs/ui/FormEdit.h"

#include "model/Global.h"
#include "support/Numbers.h"
#include "tabs/ui/TextBoxEntry.h"
#include "widgets/Colours.h"
#include "widgets/Controls.h"
#include "widgets/EntryFocus.h"
#include "widgets/FormHelp.h"
#include "widgets/TextBoxFunctions.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QPushButton>
#include <QShowEvent>

namespace ztv {

namespace {

constexpr int raw = 0;
constexpr int volts = 1;
constexpr int voltsDecimals = 2;
constexpr int significantDigits = 15;
constexpr int margin = 12;
constexpr int boxWidth = 110;
constexpr int buttonWidth = 80;

} // namespace

FormEdit::FormEdit(EntryRules &rules, UserDialogs &dialogs, ClassMyHtmlHelp &help, QWidget *parent)
    : QDialog(parent),
      rules_(rules),
      dialogs_(dialogs) {
    Controls::Named(this, "FormEdit");
    setWindowTitle(QStringLiteral("Enter Value"));
    BuildControls();
    FormHelp::Offer(*this, help.Topic(HelpContextID));
    optionDataType_[raw]->setChecked(true);
}

void FormEdit::BuildControls() {
    auto *grid = new QGridLayout;
    grid->setHorizontalSpacing(margin);
    constexpr std::array captions = {"&Raw", "&Volts"};
    for (int index : {raw, volts}) {
        const auto i = static_cast<std::size_t>(index);
        auto *option =
            Controls::Captioned<QRadioButton>(Controls::Member("OptionDataType", index), captions[i], this);
        auto *box = Controls::Named(new QLineEdit(this), Controls::Member("TextDataVal", index));
        box->setAccessibleName(option->accessibleName());
        box->setFixedWidth(boxWidth);
        box->setEnabled(false);
        Colours::KeepLegibleWhileDisabled(*box);
        grid->addWidget(option, index, 0);
        grid->addWidget(box, index, 1);
        EntryFocus::SelectAllOnEntry(*box);
        EntryFocus::ValidateOnLeave(*box, [this, index] { return Validate(index); });
        connect(option, &QRadioButton::toggled, this, [this, index](bool selected) {
            if (selected) {
                SelectType(index);
            }
        });
        optionDataType_[i] = option;
        textDataVal_[i] = box;
    }

    auto *ok = Controls::Captioned<QPushButton>("CommandOK", "&OK", this);
    auto *cancel = Controls::Captioned<QPushButton>("CommandCancel", "&Cancel", this);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    for (QPushButton *button : {ok, cancel}) {
        button->setMinimumWidth(buttonWidth);
        button->setAutoDefault(false);
        buttons->addWidget(button);
    }
    ok->setDefault(true);
    connect(ok, &QPushButton::clicked, this, &FormEdit::WriteAndClose);
    connect(cancel, &QPushButton::clicked, this, &FormEdit::reject);

    QWidget *const tabOrder[] = {
        optionDataType_[raw], optionDataType_[volts], textDataVal_[raw], textDataVal_[volts], ok, cancel};
    for (std::size_t i = 1; i < std::size(tabOrder); ++i) {
        setTabOrder(tabOrder[i - 1], tabOrder[i]);
    }

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(margin, margin, margin, margin);
    layout->addLayout(grid);
    layout->addSpacing(margin);
    layout->addLayout(buttons);
    layout->setSizeConstraint(QLayout::SetFixedSize);
}

void FormEdit::SetEntry(const QString &text, const QString &tag) {
    textDataVal_[raw]->setText(text);
    textDataVal_[raw]->setProperty("Tag", tag);
}

void FormEdit::showEvent(QShowEvent *event) {
    QDialog::showEvent(event);
    if (event->spontaneous()) {
        return; // restored from minimised: keeps the text that is being typed
    }
    ConvertFrom(raw);
    textDataVal_[raw]->setFocus(Qt::OtherFocusReason);
}

void FormEdit::SelectType(int index) {
    const auto chosen = static_cast<std::size_t>(index);
    textDataVal_[chosen]->setEnabled(true);
    textDataVal_[1 - chosen]->setEnabled(false);
    if (isVisible()) {
        textDataVal_[chosen]->setFocus(Qt::OtherFocusReason);
    }
}

// Updates the other box too if the text is valid: the user leaves this box then.
bool FormEdit::Validate(int index) {
    const bool isRaw = index == raw;
    const bool valid = TextBoxFunctions::ValidateNumericEntry(
        *textDataVal_[static_cast<std::size_t>(index)],
        isRaw ? QStringLiteral("the raw value") : QStringLiteral("the formatted value"),
        isRaw ? RawMin : EngMin, isRaw ? RawMax : EngMax, false, dialogs_);
    if (valid) {
        ConvertFrom(index);
    }
    return valid;
}

void FormEdit::ConvertFrom(int index) {
    const QString text = textDataVal_[static_cast<std::size_t>(index)]->text();
    if (!IsNumeric(text)) {
        return; // the parameter's unit isn't a plain number
    }
    if (index == raw) {
        const double shown =
            Global::InterpolateClipped(ToInt16(ToNumber(text)), RawMin, RawMax, EngMin, EngMax);
        textDataVal_[volts]->setText(FormatDecimals(shown, voltsDecimals));
    } else {
        const double value = Global::InterpolateClipped(ToNumber(text), EngMin, EngMax, RawMin, RawMax);
        textDataVal_[raw]->setText(QString::number(value, 'g', significantDigits));
        textDataVal_[volts]->setText(ReformatDecimals(text, voltsDecimals));
    }
    converted_ = {textDataVal_[raw]->text(), textDataVal_[volts]->text()};
}

// Validates here too, because an assistive client presses OK without leaving the box.
bool FormEdit::EntryIsConverted() {
    const int index = textDataVal_[volts]->isEnabled() ? volts : raw;
    QLineEdit &box = *textDataVal_[static_cast<std::size_t>(index)];
    if (box.text() == converted_[static_cast<std::size_t>(index)] || Validate(index)) {
        return true;
    }
    box.setFocus(Qt::OtherFocusReason);
    TextBoxFunctions::SelectAllText(box);
    return false;
}

void FormEdit::WriteAndClose() {
    if (!EntryIsConverted()) {
        return;
    }
    QLineEdit &box = *textDataVal_[raw];
    if (ValidateAndWriteTextBoxVal(box, rules_)) {
        accept();
    } else {
        box.setFocus(Qt::OtherFocusReason); // has no effect on a disabled box
    }
}

} // namespace ztv

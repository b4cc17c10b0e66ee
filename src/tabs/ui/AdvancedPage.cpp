#include "tabs/ui/AdvancedPage.h"

#include "model/ValueState.h"
#include "support/Fault.h"
#include "support/Numbers.h"
#include "tabs/ParameterEditors.h"
#include "tabs/ui/FormEdit.h"
#include "widgets/Controls.h"
#include "widgets/WhyDisabled.h"

#include <QApplication>

namespace ztv {

namespace {

using View = ParameterListModel::View;

constexpr int allOption = 0;
constexpr int changedOption = 1;

// Twips.
constexpr int listLeft = 150;
constexpr int listTop = 180;
constexpr int listWidthLess = 300; // than the page
constexpr int listHeightLess = 900;
constexpr int optionMark = 24; // pixels
constexpr int firstOptionBelowList = 100;
constexpr int secondOptionBelowFirst = 10;
constexpr int refreshBelowList = 225;
constexpr int optionWidth = 1800;
constexpr int optionHeight = 270;
constexpr int refreshLeft = 2100;
constexpr int refreshWidth = 1335;
constexpr int refreshHeight = 405;
constexpr int listBorder = 30; // excluded from an editor's place
constexpr int textInset = 50;
constexpr int textTop = 30;
constexpr int textWider = 10; // than its column
constexpr int textLower = 10; // than its row
constexpr int choiceInset = 80;
constexpr int choiceTop = 0;

QPoint Offset(int x, int y) {
    return Controls::FromTwips(x, y, 0, 0).topLeft();
}

int Pixels(int twips) {
    return Controls::FromTwips(0, 0, twips, 0).width();
}

} // namespace

AdvancedPage::AdvancedPage(ClassZentrova &zentrova, EntryRules &rules, UserDialogs &dialogs,
                           ClassMyHtmlHelp &help, ValueOverlay &text1, QWidget *parent)
    : TabPage(2, parent),
      zentrova_(zentrova),
      rules_(rules),
      dialogs_(dialogs),
      help_(help),
      text1_(text1),
      model_(zentrova) {
    BuildControls();
    connect(listView1_, &ParameterList::EditWanted, this, &AdvancedPage::Edit);
    connect(listView1_, &ParameterList::Moved, this, [this] {
        if (isVisible()) {
            HideEditorsIfScrolled(); // stores the list's present top row
            CloseEditors();
        }
    });
    connect(combo1_, &ChoiceOverlay::Chosen, this, &AdvancedPage::Choose);
    connect(&rules_, &EntryRules::Written, this,
            [this](std::int16_t, const QString &text) { ShowWritten(text); });
    for (QRadioButton *option : optionViewParameters_) {
        connect(option, &QRadioButton::toggled, this, [this](bool selected) {
            if (selected) {
                Rebuild();
            }
        });
    }
    connect(commandRefresh_, &QPushButton::clicked, this, [this] {
        if (combo1_->isVisible()) {
            commandRefresh_->setFocus(Qt::OtherFocusReason); // its mnemonic doesn't move the focus
        }
        Rebuild();
    });
    optionViewParameters_[allOption]->setChecked(true);
}

void AdvancedPage::BuildControls() {
    listView1_ = new ParameterList(model_, this);

    constexpr std::array captions = {"All", "Changed"};
    constexpr std::array toolTips = {"Display All Parameters",
                                     "Display only parameters changed from factory presets"};
    for (int index : {allOption, changedOption}) {
        const auto i = static_cast<std::size_t>(index);
        auto *option = Controls::Captioned<QRadioButton>(Controls::Member("OptionViewParameters", index),
                                                         captions[i], this);
        option->setToolTip(QString::fromLatin1(toolTips[i]));
        option->setFont(Controls::FittingFont(font(), {{.text = option->text(),
                                                        .width = Pixels(optionWidth) - optionMark,
                                                        .height = Pixels(optionHeight)}}));
        optionViewParameters_[i] = option;
    }

    commandRefresh_ = Controls::Captioned<QPushButton>("CommandRefresh", "&Refresh", this);
    commandRefresh_->setToolTip(QStringLiteral("Refresh the Parameters Changed display"));

    WhyDisabled::Explain(*commandRefresh_, QStringLiteral("All is always up to date. Select Changed first."));

    combo1_ = new ChoiceOverlay(text1_.parentWidget());
    setTabOrder(listView1_, combo1_);
    setTabOrder(combo1_, listView1_); // Enter moves the focus to the list
}

// Views. --------------------------------------------------------------------------------------------

void AdvancedPage::Rebuild() {
    const bool changedOnly = optionViewParameters_[changedOption]->isChecked();
    commandRefresh_->setEnabled(changedOnly);
    const int row = listView1_->SelectedRow();
    const std::int16_t selected = row < 0 ? std::int16_t{0} : model_.TagOf(row);
    CloseEditors();
    model_.Fill(changedOnly ? View::Changed : View::All);
    if (model_.rowCount() > 0) {
        listView1_->SelectRow(model_.RowOf(selected).value_or(0));
    }
    Q_EMIT Rebuilt();
}

void AdvancedPage::ShowState(ValueState state) {
    listView1_->SlantMeasured(state != ValueState::Live);
}

void AdvancedPage::UpdateDisplay() {
    HideEditorsIfScrolled();
    model_.Refresh();
}

void AdvancedPage::ShowFailedWrites() {
    model_.RefreshFailures();
}

void AdvancedPage::HideEditorsIfScrolled() {
    const int row = listView1_->FirstVisibleRow();
    if (row >= 0 && model_.TagOf(row) != firstVisible_) {
        firstVisible_ = model_.TagOf(row);
        CloseEditors();
    }
}

// Closes the text box first: closing it may call this function again.
void AdvancedPage::CloseEditors() {
    text1_.Close();
    combo1_->Close();
}

// Deliberate: the selected row shows the text of any parameter that is written, until the next refresh.
void AdvancedPage::ShowWritten(const QString &text) {
    if (const int row = listView1_->SelectedRow(); row >= 0) {
        model_.ShowValue(row, text);
    }
}

// Editors. ------------------------------------------------------------------------------------------

void AdvancedPage::Edit(int row) {
    using Kind = ParameterEditors::Kind;
    const std::int16_t tag = model_.TagOf(row);
    const QString tagText = model_.Text(row, ParameterListModel::Tag);
    text1_.SetTag(tagText);
    switch (ParameterEditors::KindOf(zentrova_, tag)) {
    case Kind::None:
        break;
    case Kind::OutputDialog:
        // Opens from the event loop, after the handler of the click has returned.
        QMetaObject::invokeMethod(
            this,
            [this, tagText, text = model_.Text(row, ParameterListModel::Value)] {
                if (QApplication::activeModalWidget() == nullptr) { // a repeated request opens it once
                    EditOutput(tagText, text);
                }
            },
            Qt::QueuedConnection);
        break;
    case Kind::Text:
        EditText(row);
        break;
    case Kind::Choice:
        EditChoice(row, tag);
        break;
    }
}

QRect AdvancedPage::PlaceOfText(int row) const {
    const QRect cell = listView1_->PlaceOf(row, ParameterListModel::Value, *text1_.parentWidget());
    return {cell.topLeft() + Offset(textInset - listBorder, textTop - listBorder),
            QSize(cell.width() + Pixels(textWider), cell.height() - Pixels(textLower))};
}

// The choice has the height that it needs.
QRect AdvancedPage::PlaceOfChoice(int row) const {
    const QRect cell = listView1_->PlaceOf(row, ParameterListModel::Value, *text1_.parentWidget());
    return {cell.topLeft() + Offset(choiceInset - listBorder, choiceTop - listBorder),
            QSize(cell.width(), combo1_->sizeHint().height())};
}

// The columns may have got other widths.
void AdvancedPage::KeepEditorsOverTheirCell() {
    if (isVisible() && text1_.isVisible()) {
        text1_.setGeometry(PlaceOfText(editedRow_));
    }
    if (combo1_->isVisible()) {
        combo1_->setGeometry(PlaceOfChoice(editedRow_));
    }
}

void AdvancedPage::EditText(int row) {
    editedRow_ = row;
    text1_.MoveOver(*listView1_, PlaceOfText(row), model_.Text(row, ParameterListModel::Tag),
                    model_.Text(row, ParameterListModel::Value));
    text1_.Open();
    listView1_->ScrollUnder(text1_);
}

void AdvancedPage::EditChoice(int row, std::int16_t tag) {
    ParameterEditors::Choice choice;
    try {
        choice = ParameterEditors::ChoiceOf(zentrova_, tag, row);
    } catch (const Fault &fault) {
        Warn(dialogs_, fault.Description());
        return;
    }
    if (!choice.CanOpen()) {
        Warn(dialogs_, ParameterEditors::WhyItCannotOpen(zentrova_, tag, row));
        return;
    }
    choiceTag_ = tag;
    editedRow_ = row;
    combo1_->setAccessibleName(zentrova_.ParamName(tag));
    const QRect place = PlaceOfChoice(row);
    combo1_->Open(*listView1_, place.topLeft(), place.width(), choice.texts, choice.start);
    listView1_->ScrollUnder(*combo1_);
}

void AdvancedPage::Choose(int index) {
    zentrova_.ParamValue(choiceTag_, index);
    ShowWritten(zentrova_.ParamLookUp(zentrova_.ParamUnits(choiceTag_), index));
}

void AdvancedPage::LeaveEntry() {
    combo1_->Leave();
}

void AdvancedPage::EditOutput(const QString &tagText, const QString &text) {
    const std::int16_t tag = ToInt16(ToNumber(tagText));
    FormEdit form(rules_, dialogs_, help_, this);
    form.RawMin = ToInt16(zentrova_.ParamMin(tag));
    form.RawMax = ToInt16(zentrova_.ParamMax(tag));
    form.EngMin = 0;
    form.EngMax = 10;
    form.SetEntry(text, tagText);
    form.exec();
}

// Layout. -------------------------------------------------------------------------------------------

void AdvancedPage::Fit() {
    const int listWidth = width() * Controls::TwipsPerPixel - listWidthLess;
    const int listHeight = height() * Controls::TwipsPerPixel - listHeightLess;
    const int below = listTop + listHeight;
    const int first = below + firstOptionBelowList;
    const int second = first + optionHeight + secondOptionBelowFirst;
    listView1_->setGeometry(Controls::FromTwips(listLeft, listTop, listWidth, listHeight));
    optionViewParameters_[allOption]->setGeometry(
        Controls::FromTwips(listLeft, first, optionWidth, optionHeight));
    optionViewParameters_[changedOption]->setGeometry(
        Controls::FromTwips(listLeft, second, optionWidth, optionHeight));
    commandRefresh_->setGeometry(
        Controls::FromTwips(refreshLeft, below + refreshBelowList, refreshWidth, refreshHeight));
    KeepEditorsOverTheirCell();
    CloseEditorsOffTheList();
}

// Closes an editor that a smaller window leaves outside the list: the cell is hidden then, but the editor
// isn't.
void AdvancedPage::CloseEditorsOffTheList() {
    const int bottom = listView1_->mapTo(text1_.parentWidget(), QPoint(0, listView1_->height())).y();
    for (const QWidget *editor : std::initializer_list<const QWidget *>{&text1_, combo1_}) {
        if (editor->isVisible() && editor->geometry().bottom() >= bottom) {
            CloseEditors();
        }
    }
}

void AdvancedPage::hideEvent(QHideEvent *event) {
    combo1_->Close();
    TabPage::hideEvent(event);
}

} // namespace ztv

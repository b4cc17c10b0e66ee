#pragma once

#include "help/ClassMyHtmlHelp.h"
#include "model/ClassZentrova.h"
#include "support/UserDialogs.h"
#include "tabs/EntryRules.h"
#include "tabs/ParameterListModel.h"
#include "tabs/ui/ChoiceOverlay.h"
#include "tabs/ui/ParameterList.h"
#include "tabs/ui/ValueOverlay.h"
#include "widgets/TabPage.h"

#include <QPushButton>
#include <QRadioButton>
#include <array>
#include <cstdint>

namespace ztv {

// The Advanced tab: the list of all parameters, in which the user edits those that may be changed.
class AdvancedPage : public TabPage {
    Q_OBJECT

public:
    // `text1` is the main form's box for typed values; Combo1 gets the same parent.
    AdvancedPage(ClassZentrova &zentrova, EntryRules &rules, UserDialogs &dialogs, ClassMyHtmlHelp &help,
                 ValueOverlay &text1, QWidget *parent);

    void LeaveEntry() override;
    void ShowState(ValueState state) override;
    void UpdateDisplay() override;
    void ShowFailedWrites() override;

Q_SIGNALS:
    // The rows were rebuilt; their values are empty until UpdateDisplay.
    void Rebuilt();

protected:
    void Fit() override;
    void hideEvent(QHideEvent *event) override;

private:
    void BuildControls();
    void Rebuild();
    void ShowWritten(const QString &text);
    void HideEditorsIfScrolled();
    void CloseEditors();
    void KeepEditorsOverTheirCell();
    void CloseEditorsOffTheList();
    QRect PlaceOfText(int row) const;
    QRect PlaceOfChoice(int row) const;
    void Edit(int row);
    void EditText(int row);
    void EditChoice(int row, std::int16_t tag);
    void EditOutput(const QString &tagText, const QString &text);
    void Choose(int index);

    ClassZentrova &zentrova_;
    EntryRules &rules_;
    UserDialogs &dialogs_;
    ClassMyHtmlHelp &help_;
    ValueOverlay &text1_;
    ParameterListModel model_;
    ParameterList *listView1_ = nullptr;
    ChoiceOverlay *combo1_ = nullptr;
    std::array<QRadioButton *, 2> optionViewParameters_{};
    QPushButton *commandRefresh_ = nullptr;
    int editedRow_ = 0;             // of the editor that is open
    std::int16_t choiceTag_ = 0;    // the parameter that Combo1 was opened for
    std::int16_t firstVisible_ = 0; // the parameter in the top row at the last check
};

} // namespace ztv

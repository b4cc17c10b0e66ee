#pragma once

#include "help/ClassMyHtmlHelp.h"
#include "support/UserDialogs.h"
#include "tabs/EntryRules.h"

#include <QDialog>
#include <QLineEdit>
#include <QRadioButton>
#include <array>
#include <cstdint>

namespace ztv {

// Edits a raw value of the output stage, as a number or in volts. An accepted value is written before the
// dialog closes.
class FormEdit : public QDialog {
    Q_OBJECT

public:
    static constexpr std::int32_t HelpContextID = 1160;

    FormEdit(EntryRules &rules, UserDialogs &dialogs, ClassMyHtmlHelp &help, QWidget *parent = nullptr);

    // The limits of the raw range and the volts at them. REQUIRES: set before the dialog is shown.
    std::int16_t RawMin = 0;
    std::int16_t RawMax = 0;
    std::int16_t EngMin = 0;
    std::int16_t EngMax = 0;

    // Sets the raw value, as text, and the number of its parameter.
    void SetEntry(const QString &text, const QString &tag);

protected:
    void showEvent(QShowEvent *event) override;

private:
    void BuildControls();
    void SelectType(int index);
    bool Validate(int index);
    void ConvertFrom(int index);
    bool EntryIsConverted();
    void WriteAndClose();

    EntryRules &rules_;
    UserDialogs &dialogs_;
    std::array<QRadioButton *, 2> optionDataType_{};
    std::array<QLineEdit *, 2> textDataVal_{};
    std::array<QString, 2> converted_; // the texts after the last conversion
};

} // namespace ztv

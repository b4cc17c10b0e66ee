#pragma once

#include "help/ClassMyHtmlHelp.h"
#include "model/ClassZentrova.h"
#include "model/ValueState.h"
#include "setup/LiveReading.h"
#include "setup/WizardSteps.h"
#include "setup/ui/WizardFrames.h"
#include "support/UserDialogs.h"

#include <QDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>
#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

namespace ztv {

class StateLabel;

// The setup wizard: guides the user through the setup of a sensor, step by step, and writes the settings at
// its end. REQUIRES: the link is online, since the wizard shows the live distance.
class frmWizard : public QDialog {
    Q_OBJECT

public:
    static constexpr std::int32_t HelpContextID = 1140;

    frmWizard(ClassZentrova &zentrova, UserDialogs &dialogs, ClassMyHtmlHelp &help,
              QWidget *parent = nullptr);

    bool eventFilter(QObject *watched, QEvent *event) override;

    // Takes how the table's values relate to the sensor: before the first one, nothing was read.
    void ShowState(ValueState state);

    // Takes the values of a poll, which are in the table.
    void TakePoll();

Q_SIGNALS:
    // Reports what the sensor is asked for at the wizard's end, before it is written.
    void Asked(const std::vector<ztv::ParameterValue> &values);

public Q_SLOTS:
    // Escape acts as the Cancel button.
    void reject() override;

protected:
    // Unlike Cancel, closing the window by its frame restores nothing.
    void closeEvent(QCloseEvent *event) override;

private:
    enum Navigation { Help, CancelButton, BackButton, NextButton, FinishButton };

    QWidget *BuildNavigation();
    void SetTabOrder();
    void ConnectFrames();

    void Press(void (frmWizard::*work)());
    void Next();
    void Back();
    void AskToCancel();
    QString WhatCancelDoes() const;
    void Finish();
    void CloseOnceSent(int result);
    void Record(int place);
    void ShowReading();
    void ShowCondition();
    void ShowChanges();
    void ShowRecorded();
    void ShowStep();
    void AddEntry(QLineEdit &box, std::function<bool()> isValid);
    bool EntriesAreValid();
    bool ValidateDiameter(QLineEdit &box);
    bool ValidateVoltage(int place);

    ClassZentrova &zentrova_;
    UserDialogs &dialogs_;
    WizardSteps steps_;
    WizardFrames *frames_ = nullptr;
    std::array<QPushButton *, 5> cmdNav_{};
    StateLabel *waiting_ = nullptr;
    LiveReading reading_;
    QTimer timerUpdate_{this};
    struct Entry {
        QLineEdit *box;
        std::function<bool()> isValid;
    };
    std::vector<Entry> entries_;
    std::optional<WizardSteps::Step> shownStep_;
    bool pressed_ = false;
    bool leaving_ = false; // closes once the writes are sent
};

} // namespace ztv

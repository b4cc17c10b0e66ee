#pragma once

#include "model/ClassZentrova.h"
#include "setup/WizardSteps.h"
#include "setup/ui/RollGraphic.h"
#include "support/ClassMyHtmlHelp.h"
#include "support/UserDialogs.h"

#include <QCheckBox>
#include <QDialog>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTimer>
#include <array>
#include <functional>
#include <vector>

class QGridLayout;
class QVBoxLayout;

// The setup wizard: leads through putting a sensor to use, step by step, and writes the settings at its end.
// It is opened online, since it shows the live distance.
class frmWizard : public QDialog {
    Q_OBJECT

public:
    static constexpr std::int32_t HelpContextID = 1140;

    frmWizard(ClassZentrova &zentrova, UserDialogs &dialogs, ClassMyHtmlHelp &help,
              QWidget *parent = nullptr);

    bool eventFilter(QObject *watched, QEvent *event) override;

public Q_SLOTS:
    // Escape is the Cancel button.
    void reject() override;

protected:
    // Unlike Cancel, closing the window by its frame puts nothing back.
    void closeEvent(QCloseEvent *event) override;

private:
    enum Navigation { Help, CancelButton, BackButton, NextButton, FinishButton };
    enum class Leave { No, Ask, Close };

    QVBoxLayout *BuildStep(int step, int headingIndex, const char *heading);
    void BuildIntroduction();
    void BuildMode();
    void BuildEnd(int step);
    void BuildDiameters();
    void BuildCoreDistance();
    void BuildDrive();
    void BuildFinished();
    QGridLayout *BuildRecording(int place);
    QLabel *NewText(const QString &name, const char *text);
    QLabel *NewSuffix();
    QWidget *BuildNavigation();
    void SetTabOrder();
    void SizeSteps();

    void Press(void (frmWizard::*work)());
    void Work(const std::function<void()> &work);
    void Next();
    void Back();
    void AskToCancel();
    void Finish();
    void Record(int place);
    void ShowReading();
    void ShowRecorded();
    void ShowStep();
    QWidget *FirstControl() const;
    WizardSteps::Entries Entries() const;
    void AddEntry(QLineEdit &box, std::function<bool()> isValid);
    bool EntriesAreValid();
    bool ValidateDiameter(QLineEdit &box, const char *name);
    bool ValidateVoltage(std::size_t index);
    void Tell(const QString &message);

    ClassZentrova &zentrova_;
    UserDialogs &dialogs_;
    WizardSteps steps_;
    QWidget *area_ = nullptr;
    std::array<QGroupBox *, WizardSteps::StepCount> fraStep_{};
    std::array<QRadioButton *, 2> optionZentrovaMode_{};
    std::array<QRadioButton *, 2> optionDriveMode_{};
    std::array<QLabel *, WizardSteps::PlaceCount> labelActualDistance_{};
    std::array<QLabel *, WizardSteps::PlaceCount> labelRecordedDistance_{};
    std::array<QPushButton *, WizardSteps::PlaceCount> commandRecordDistance_{};
    std::array<QLineEdit *, 2> textVoltageOutput_{};
    QLineEdit *textCoreDia_ = nullptr;
    QLineEdit *textMaxDia_ = nullptr;
    QLabel *labelDistToCore_ = nullptr;
    QLabel *labelDistToMax_ = nullptr;
    RollGraphic *frameGraphic_ = nullptr;
    QCheckBox *chkSaveSettings_ = nullptr;
    std::array<QPushButton *, 5> cmdNav_{};
    QTimer timerUpdate_{this};
    struct Entry {
        QLineEdit *box;
        std::function<bool()> isValid;
    };
    std::vector<Entry> entries_;
    int suffixes_ = 0;
    int shownStep_ = 0;
    bool pressed_ = false;
    bool atWork_ = false;
    Leave leave_ = Leave::No;
};

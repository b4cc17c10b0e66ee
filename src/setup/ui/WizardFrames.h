#pragma once

#include "setup/WizardSteps.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QWidget>
#include <array>
#include <vector>

class QGridLayout;
class QVBoxLayout;
class RollGraphic;

// The frames of the wizard's steps, one of which is in sight: their controls, the choices and texts there,
// and the readings. frmWizard handles the presses.
class WizardFrames : public QWidget {
    Q_OBJECT

public:
    explicit WizardFrames(QWidget *parent);

    // By the index of a place. The core has no voltage.
    QPushButton &CommandRecordDistance(int place) const {
        return *commandRecordDistance_.at(static_cast<std::size_t>(place));
    }
    QLineEdit &TextVoltageOutput(int place) const {
        return *textVoltageOutput_.at(static_cast<std::size_t>(place));
    }
    QLineEdit &TextCoreDia() const { return *textCoreDia_; }
    QLineEdit &TextMaxDia() const { return *textMaxDia_; }
    QCheckBox &ChkSaveSettings() const { return *chkSaveSettings_; }

    std::vector<QWidget *> TabOrder() const;
    WizardSteps::Entries Entries() const;

    void ShowReading(const WizardSteps::Reading &latest);
    void ShowRecorded(int place, const WizardSteps::Reading &recorded);
    void ShowRoll(const WizardCalibration::Roll &roll);

    // The focus goes to where the user goes on in that step, or, where nothing is to be done, to `otherwise`.
    void ShowStep(WizardSteps::Step step, QWidget &otherwise);

private:
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
    void SizeSteps();
    QWidget *FirstControl(WizardSteps::Step step) const;

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
    int suffixes_ = 0;
    QGroupBox *shown_ = nullptr;
};

#pragma once

#include "setup/LiveReading.h"
#include "setup/WizardSteps.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QWidget>
#include <array>
#include <cstddef>
#include <vector>

class QGridLayout;
class QVBoxLayout;

namespace ztv {

class ChangesList;
class RollGraphic;
class StateLabel;

// The frames of the wizard's steps, of which one is visible: their controls, the user's entries and the
// readings. frmWizard handles the presses.
class WizardFrames : public QWidget {
    Q_OBJECT

public:
    explicit WizardFrames(QWidget *parent);

    // Indexed by place. There is no voltage at the core.
    QPushButton &CommandRecordDistance(int place) const {
        return *commandRecordDistance_.at(static_cast<std::size_t>(place));
    }
    QLineEdit &TextVoltageOutput(int place) const {
        return *textVoltageOutput_.at(static_cast<std::size_t>(place));
    }
    QLineEdit &TextCoreDia() const { return *textCoreDia_; }
    QLineEdit &TextMaxDia() const { return *textMaxDia_; }
    QCheckBox &SaveSettings() const { return *chkSaveSettings_; }
    ChangesList &Changes() const { return *changes_; }

    std::vector<QWidget *> TabOrder() const;
    WizardSteps::Entries Entries() const;

    void ShowReading(const WizardSteps::Reading &latest);
    void ShowCondition(LiveReading::Tone tone, const QString &words); // of the reading
    void ShowRecorded(int place, const WizardSteps::Reading &recorded);
    void ShowRoll(const WizardCalibration::Roll &roll);

    // Shows the step and moves the focus to the control at which the user continues, or to `otherwise` if
    // there is none.
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
    std::array<StateLabel *, WizardSteps::PlaceCount> labelCondition_{};
    std::array<QLabel *, WizardSteps::PlaceCount> labelRecordedDistance_{};
    std::array<QPushButton *, WizardSteps::PlaceCount> commandRecordDistance_{};
    std::array<QLineEdit *, 2> textVoltageOutput_{};
    QLineEdit *textCoreDia_ = nullptr;
    QLineEdit *textMaxDia_ = nullptr;
    QLabel *labelDistToCore_ = nullptr;
    QLabel *labelDistToMax_ = nullptr;
    RollGraphic *frameGraphic_ = nullptr;
    QCheckBox *chkSaveSettings_ = nullptr;
    ChangesList *changes_ = nullptr;
    int suffixes_ = 0;
    QGroupBox *shown_ = nullptr;
};

} // namespace ztv

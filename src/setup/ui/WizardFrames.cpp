#include "setup/ui/WizardFrames.h"

#include "setup/ui/ChangesList.h"
#include "setup/ui/RollGraphic.h"
#include "setup/ui/StateLabel.h"
#include "widgets/Controls.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

namespace ztv {

namespace {

constexpr int leastStepWidth = 660;
constexpr int parkedLeft = -10000; // twips
constexpr int numberWidth = 80;
constexpr int gap = 14;
constexpr int optionIndent = 24;

std::size_t At(int index) {
    return static_cast<std::size_t>(index);
}

int ParkedLeft() {
    return Controls::FromTwips(parkedLeft, 0, 0, 0).left();
}

template <typename Meaning>
std::optional<Meaning> Chosen(const std::array<QRadioButton *, 2> &options, Meaning first, Meaning second) {
    if (options[0]->isChecked()) {
        return first;
    }
    return options[1]->isChecked() ? std::optional(second) : std::nullopt;
}

QRadioButton *ChosenOrFirst(const std::array<QRadioButton *, 2> &options) {
    return options[1]->isChecked() ? options[1] : options[0];
}

} // namespace

WizardFrames::WizardFrames(QWidget *parent) : QWidget(parent) {
    BuildIntroduction();
    BuildMode();
    BuildEnd(WizardSteps::FarEnd);
    BuildEnd(WizardSteps::NearEnd);
    BuildDiameters();
    BuildCoreDistance();
    BuildDrive();
    BuildFinished();
    SizeSteps();
}

// Builds the frame of a step and returns the column beside its picture.
QVBoxLayout *WizardFrames::BuildStep(int step, int headingIndex, const char *heading) {
    auto *frame = new QGroupBox(this);
    Controls::Named(frame, Controls::Member("fraStep", step));
    frame->setTitle(step == WizardSteps::Introduction ? QStringLiteral("Introduction Screen")
                    : step == WizardSteps::Finished   ? QStringLiteral("Finished!")
                                                      : QStringLiteral("Step %1").arg(step));
    frame->hide();
    fraStep_[At(step)] = frame;
    auto *row = new QHBoxLayout(frame);
    row->setContentsMargins(gap, gap, gap, gap);
    row->setSpacing(gap);
    row->addWidget(Controls::Named(new StepPicture(QStringLiteral(":/wizard/step-%1").arg(step), frame),
                                   Controls::Member("imgStep", step)),
                   0, Qt::AlignTop);
    auto *column = new QVBoxLayout;
    column->setSpacing(gap);
    row->addLayout(column, 1);
    QLabel *label = NewText(Controls::Member("lblStep", headingIndex), heading);
    QFont font = label->font();
    font.setBold(true);
    label->setFont(font);
    column->addWidget(label);
    return column;
}

QLabel *WizardFrames::NewText(const QString &name, const char *text) {
    auto *label = Controls::Named(new QLabel(QString::fromLatin1(text)), name);
    label->setWordWrap(true);
    return label;
}

QLabel *WizardFrames::NewSuffix() {
    return Controls::Named(new QLabel(QStringLiteral("Inches")),
                           Controls::Member("LabelSuffix", suffixes_++));
}

void WizardFrames::BuildIntroduction() {
    BuildStep(WizardSteps::Introduction, 0,
              "This Wizard will assist you in setting up the Zentrova. Click Next to proceed or Cancel to "
              "abort.")
        ->addStretch();
}

void WizardFrames::BuildMode() {
    QVBoxLayout *column = BuildStep(WizardSteps::Mode, 1,
                                    "Please select the desired mode of operation below and then click Next.");
    struct Row {
        const char *caption;
        const char *name;
        const char *text;
    };
    const Row rows[] = {
        {"Distance", "lblDistDesc",
         "Select this mode if the Zentrova simply provides a signal proportional to the distance."},
        {"Diameter", "lblDiaDesc",
         "Select this mode if the Zentrova provides a reference DIRECTLY to a velocity or torque mode drive "
         "in a center-driven winder/unwinder application. NOTE: This method is typically NOT selected when "
         "interfacing the unit to a Ostrel KT or Brava Max unit as these devices already have diameter "
         "compensating setups. In these cases, the Distance method should be selected."}};
    for (int index = 0; index < 2; ++index) {
        const Row &row = rows[index];
        auto *option =
            Controls::Captioned<QRadioButton>(Controls::Member("OptionZentrovaMode", index), row.caption);
        QLabel *description = NewText(QString::fromLatin1(row.name), row.text);
        option->setAccessibleDescription(description->text());
        description->setIndent(optionIndent);
        auto *pair = new QVBoxLayout;
        pair->setSpacing(gap / 4);
        pair->addWidget(option);
        pair->addWidget(description);
        column->addLayout(pair);
        optionZentrovaMode_[At(index)] = option;
    }
    column->addStretch();
}

// Builds the live distance with its condition, the recorded one and the Record button of a place. The
// condition lies behind the live distance; at the core, where the roll takes that room, below it.
QGridLayout *WizardFrames::BuildRecording(int place) {
    const bool isBelow = place == WizardSteps::AtCore;
    const int recordedRow = isBelow ? 2 : 1;
    auto *grid = new QGridLayout;
    const auto number = [](const QString &name, const char *spoken) {
        auto *label = Controls::Named(new QLabel(WizardSteps::NoReading()), name);
        label->setAccessibleDescription(QString::fromLatin1(spoken)); // its accessible name is the number
        label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        label->setMinimumWidth(numberWidth);
        QFont font = label->font();
        font.setBold(true);
        label->setFont(font);
        return label;
    };
    grid->addWidget(Controls::Named(new QLabel(QStringLiteral("Current Distance:")),
                                    Controls::Member("LabelCurrentDist", place)),
                    0, 0);
    grid->addWidget(Controls::Named(new QLabel(QStringLiteral("Recorded Distance:")),
                                    Controls::Member("LabelRecordedDist", place)),
                    recordedRow, 0);
    labelActualDistance_[At(place)] =
        number(Controls::Member("LabelActualDistance", place), "Current Distance");
    labelRecordedDistance_[At(place)] =
        number(Controls::Member("LabelRecordedDistance", place), "Recorded Distance");
    grid->addWidget(labelActualDistance_[At(place)], 0, 1);
    grid->addWidget(labelRecordedDistance_[At(place)], recordedRow, 1);
    labelCondition_[At(place)] = Controls::Named(new StateLabel(LiveReading::LongestWords()),
                                                 Controls::Member("LabelCondition", place));
    labelCondition_[At(place)]->setAccessibleDescription(QStringLiteral("State of the current distance"));
    if (isBelow) {
        grid->addWidget(labelCondition_[At(place)], 1, 0, 1, 3);
    } else {
        grid->addWidget(labelCondition_[At(place)], 0, 3, 1, 2);
    }
    grid->addWidget(NewSuffix(), 0, 2);
    grid->addWidget(NewSuffix(), recordedRow, 2);
    commandRecordDistance_[At(place)] =
        Controls::Captioned<QPushButton>(Controls::Member("CommandRecordDistance", place), "&Record");
    grid->setColumnStretch(4, 1);
    return grid;
}

void WizardFrames::BuildEnd(int step) {
    const bool isFar = step == WizardSteps::FarEnd;
    const int place = isFar ? WizardSteps::AtFarEnd : WizardSteps::AtNearEnd;
    const char *const texts = isFar ? "LabelMaxDistCalDesc" : "LabelMinDistCalDesc";
    QVBoxLayout *column = BuildStep(
        step, step, isFar ? "Far (Maximum) Distance Calibration" : "Near (Minimum) Distance Calibration");
    column->addWidget(
        NewText(Controls::Member(texts, 0),
                isFar ? "Place target at maximum distance from Zentrova and verify current distance reading "
                        "below. Once verified, click the Record button."
                      : "Place target at the minimum distance from the Zentrova and verify current distance "
                        "reading below. Once verified, click the Record button."));
    QGridLayout *recording = BuildRecording(place);
    recording->addWidget(commandRecordDistance_[At(place)], 1, 3);
    column->addLayout(recording);
    column->addWidget(NewText(Controls::Member(texts, 1),
                              "Enter the desired output voltage level from the Zentrova when at the above "
                              "distance and then click Next."));
    auto *box = Controls::Named(new QLineEdit, Controls::Member("TextVoltageOutput", place));
    box->setToolTip(isFar ? QStringLiteral("Desired output voltage at maximum distance")
                          : QStringLiteral("Desirerd output voltage at minimum distance"));
    box->setAccessibleName(isFar ? QStringLiteral("Output voltage at maximum distance")
                                 : QStringLiteral("Output voltage at minimum distance"));
    box->setFixedWidth(numberWidth);
    textVoltageOutput_[At(place)] = box;
    auto *row = new QHBoxLayout;
    row->addWidget(box);
    row->addWidget(
        Controls::Named(new QLabel(QStringLiteral("Volts")), Controls::Member("LabelVoltsSuffix", place)));
    row->addStretch();
    column->addLayout(row);
    column->addStretch();
}

void WizardFrames::BuildDiameters() {
    QVBoxLayout *column = BuildStep(
        WizardSteps::Diameters, 4,
        "Enter the Core and Max diameter values below. If multiple size cores and max diameters are used, "
        "enter the smallest Core diameter and the largest Max diameter.");
    struct Row {
        QLineEdit *&box;
        const char *name;
        const char *caption;
        const char *toolTip;
    };
    const Row rows[] = {{textCoreDia_, "TextCoreDia", "Core Diameter", "Diameter of an empty core"},
                        {textMaxDia_, "TextMaxDia", "Max Diameter", "Diameter of a full roll"}};
    auto *grid = new QGridLayout;
    int line = 0;
    for (const Row &row : rows) {
        auto *box = Controls::Named(new QLineEdit, row.name);
        row.box = box;
        auto *label =
            Controls::Named(new QLabel(QString::fromLatin1(row.caption)), Controls::Member("Label1", line));
        label->setBuddy(box);
        box->setToolTip(QString::fromLatin1(row.toolTip));
        box->setAccessibleName(label->text());
        box->setFixedWidth(numberWidth);
        grid->addWidget(label, line, 0);
        grid->addWidget(box, line, 1);
        grid->addWidget(NewSuffix(), line, 2);
        ++line;
    }
    grid->setColumnStretch(3, 1);
    column->addLayout(grid);
    column->addStretch();
}

void WizardFrames::BuildCoreDistance() {
    QVBoxLayout *column = BuildStep(WizardSteps::CoreDistance, 6, "Core Distance Calibration");
    column->addWidget(NewText(Controls::Member("LabelMaxDistCalDesc", 2),
                              "Load an empty Core and verify current distance reading below. Once verified, "
                              "click the Record button."));
    QGridLayout *grid = BuildRecording(WizardSteps::AtCore);
    grid->addWidget(commandRecordDistance_[WizardSteps::AtCore], 3, 1, 1, 2, Qt::AlignLeft);
    struct Row {
        QLabel *&label;
        const char *name;
        const char *caption;
    };
    const Row rows[] = {{labelDistToCore_, "LabelDistToCore", "Distance to Core:"},
                        {labelDistToMax_, "LabelDistToMax", "Distance to Max:"}};
    int line = 0;
    for (const Row &row : rows) {
        const QString caption = QString::fromLatin1(row.caption);
        row.label = Controls::Named(new QLabel, row.name);
        row.label->setAccessibleDescription(caption.chopped(1));
        row.label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        grid->addWidget(Controls::Named(new QLabel(caption), Controls::Member("Label2", line)), line + 5, 0);
        grid->addWidget(row.label, line + 5, 1);
        ++line;
    }
    grid->setRowMinimumHeight(3, gap);
    grid->setRowStretch(line + 5, 1);
    frameGraphic_ = new RollGraphic(fraStep_[WizardSteps::CoreDistance]);
    auto *row = new QHBoxLayout;
    row->addLayout(grid, 1);
    row->addWidget(frameGraphic_, 0, Qt::AlignTop);
    column->addLayout(row);
    column->addStretch();
}

void WizardFrames::BuildDrive() {
    QVBoxLayout *column = BuildStep(WizardSteps::Drive, 7, "Select the drive mode that will be used.");
    const char *const captions[] = {"Torque (winders or unwinders)", "Velocity (winders only)"};
    for (int index = 0; index < 2; ++index) {
        optionDriveMode_[At(index)] =
            Controls::Captioned<QRadioButton>(Controls::Member("OptionDriveMode", index), captions[index]);
        column->addWidget(optionDriveMode_[At(index)]);
    }
    column->addStretch();
}

void WizardFrames::BuildFinished() {
    QVBoxLayout *column = BuildStep(WizardSteps::Finished, 5,
                                    "Congratulations! You have completed the setup wizard for the Zentrova. "
                                    "Click Finish to accept these settings or Cancel to abort.");
    chkSaveSettings_ =
        Controls::Captioned<QCheckBox>("chkSaveSettings", "Save Changes in Zentrova when Wizard closes.");
    chkSaveSettings_->setToolTip(QStringLiteral("Save parameter changes in Zentrova"));
    chkSaveSettings_->setChecked(true);
    column->addWidget(chkSaveSettings_);
    changes_ = new ChangesList;
    column->addWidget(changes_, 1);
}

// Gives all steps the size of the largest one.
void WizardFrames::SizeSteps() {
    int width = leastStepWidth;
    for (QGroupBox *frame : fraStep_) {
        frame->ensurePolished();
        width = std::max(width, frame->minimumSizeHint().width());
    }
    int height = 0;
    for (const QGroupBox *frame : fraStep_) {
        height = std::max({height, frame->heightForWidth(width), frame->minimumSizeHint().height()});
    }
    for (QGroupBox *frame : fraStep_) {
        frame->setGeometry(ParkedLeft(), 0, width, height);
    }
    setFixedSize(width, height);
}

std::vector<QWidget *> WizardFrames::TabOrder() const {
    std::vector<QWidget *> order(optionZentrovaMode_.begin(), optionZentrovaMode_.end());
    for (const std::size_t place : {WizardSteps::AtFarEnd, WizardSteps::AtNearEnd}) {
        order.insert(order.end(), {commandRecordDistance_[place], textVoltageOutput_[place]});
    }
    order.insert(order.end(), {textCoreDia_, textMaxDia_, commandRecordDistance_[WizardSteps::AtCore]});
    order.insert(order.end(), optionDriveMode_.begin(), optionDriveMode_.end());
    order.insert(order.end(), {chkSaveSettings_, &changes_->List()});
    return order;
}

WizardSteps::Entries WizardFrames::Entries() const {
    return {.use = Chosen(optionZentrovaMode_, WizardSteps::Use::Distance, WizardSteps::Use::Diameter),
            .drive =
                Chosen(optionDriveMode_, WizardSteps::DriveMode::Torque, WizardSteps::DriveMode::Velocity),
            .voltage = {textVoltageOutput_[0]->text(), textVoltageOutput_[1]->text()},
            .coreDiameter = textCoreDia_->text(),
            .maxDiameter = textMaxDia_->text(),
            .save = chkSaveSettings_->isChecked()};
}

void WizardFrames::ShowReading(const WizardSteps::Reading &latest) {
    for (QLabel *label : labelActualDistance_) {
        label->setText(latest.shown);
    }
}

void WizardFrames::ShowCondition(LiveReading::Tone tone, const QString &words) {
    for (StateLabel *label : labelCondition_) {
        label->Show(tone, words);
    }
}

void WizardFrames::ShowRecorded(int place, const WizardSteps::Reading &recorded) {
    labelRecordedDistance_[At(place)]->setText(recorded.shown);
    labelRecordedDistance_[At(place)]->setProperty("Tag", recorded.RawText());
}

void WizardFrames::ShowRoll(const WizardCalibration::Roll &roll) {
    labelDistToCore_->setText(roll.distanceToCore);
    labelDistToMax_->setText(roll.distanceToMax);
    frameGraphic_->Show(roll);
}

void WizardFrames::ShowStep(WizardSteps::Step step, QWidget &otherwise) {
    QGroupBox *before = shown_;
    shown_ = fraStep_[At(step)];
    shown_->move(0, 0);
    shown_->show();
    QWidget *first = FirstControl(step);
    (first != nullptr ? *first : otherwise).setFocus(Qt::OtherFocusReason);
    if (before != nullptr && before != shown_) {
        before->hide();
        before->move(ParkedLeft(), 0);
    }
}

// Returns the control at which the user continues in the step; null if there is none.
QWidget *WizardFrames::FirstControl(WizardSteps::Step step) const {
    switch (step) {
    case WizardSteps::Mode:
        return ChosenOrFirst(optionZentrovaMode_);
    case WizardSteps::FarEnd:
        return commandRecordDistance_[WizardSteps::AtFarEnd];
    case WizardSteps::NearEnd:
        return commandRecordDistance_[WizardSteps::AtNearEnd];
    case WizardSteps::Diameters:
        return textCoreDia_;
    case WizardSteps::CoreDistance:
        return commandRecordDistance_[WizardSteps::AtCore];
    case WizardSteps::Drive:
        return ChosenOrFirst(optionDriveMode_);
    case WizardSteps::Introduction:
    case WizardSteps::Finished:
        break;
    }
    return nullptr;
}

} // namespace ztv

#include "setup/ui/frmWizard.h"

#include "support/ApplicationTitle.h"
#include "support/Fault.h"
#include "support/Numbers.h"
#include "ui/Controls.h"
#include "ui/EntryFocus.h"
#include "ui/FormHelp.h"
#include "ui/TextBoxFunctions.h"

#include <QApplication>
#include <QCloseEvent>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QScopedValueRollback>
#include <QVBoxLayout>
#include <algorithm>

namespace {

constexpr int readEveryMs = 1000;
constexpr int leastStepWidth = 660;
constexpr int parkedLeft = -10000; // twips
constexpr int numberWidth = 80;
constexpr int gap = 14;
constexpr int optionIndent = 24;
constexpr int shownDecimals = 2;
constexpr double leastDiameter = 0.01;
constexpr double greatestDiameter = 200;
constexpr double greatestVoltage = 10;

std::size_t At(int index) {
    return static_cast<std::size_t>(index);
}

int ParkedLeft() {
    return Controls::FromTwips(parkedLeft, 0, 0, 0).left();
}

// Enter presses the button that has the focus; from anywhere else it is the default one's.
QPushButton *NewButton(const QString &name, const char *caption) {
    auto *button = Controls::Named(new QPushButton(QString::fromLatin1(caption)), name);
    button->setAccessibleName(Controls::SpokenCaption(button->text()).remove(u'<').remove(u'>').trimmed());
    button->setAutoDefault(true);
    return button;
}

QRadioButton *NewOption(const char *array, int index, const char *caption) {
    auto *option =
        Controls::Named(new QRadioButton(QString::fromLatin1(caption)), Controls::Member(array, index));
    option->setAccessibleName(option->text());
    return option;
}

template <typename Meaning>
std::optional<Meaning> Chosen(const std::array<QRadioButton *, 2> &options, Meaning first, Meaning second) {
    if (options[0]->isChecked()) {
        return first;
    }
    return options[1]->isChecked() ? std::optional(second) : std::nullopt;
}

} // namespace

frmWizard::frmWizard(ClassZentrova &zentrova, UserDialogs &dialogs, ClassMyHtmlHelp &help, QWidget *parent)
    : QDialog(parent),
      zentrova_(zentrova),
      dialogs_(dialogs),
      steps_(zentrova) {
    Controls::Named(this, "frmWizard");
    setWindowTitle(QStringLiteral("Zentrova Setup Wizard"));
    area_ = new QWidget(this);
    BuildIntroduction();
    BuildMode();
    BuildEnd(WizardSteps::FarEnd);
    BuildEnd(WizardSteps::NearEnd);
    BuildDiameters();
    BuildCoreDistance();
    BuildDrive();
    BuildFinished();
    auto *column = new QVBoxLayout(this);
    column->addWidget(area_);
    column->addWidget(BuildNavigation());
    FormHelp::Offer(*this, help, HelpContextID, cmdNav_[At(Help)]);
    column->setSizeConstraint(QLayout::SetFixedSize);
    SetTabOrder();
    SizeSteps();
    ShowRecorded();
    ShowStep();
    for (QAbstractButton *button : findChildren<QAbstractButton *>()) {
        button->installEventFilter(this);
    }

    Controls::Named(&timerUpdate_, "TimerUpdate");
    connect(&timerUpdate_, &QTimer::timeout, this, [this] {
        steps_.TakeReading();
        ShowReading();
    });
    timerUpdate_.start(readEveryMs);
}

// Beside its picture.
QVBoxLayout *frmWizard::BuildStep(int step, int headingIndex, const char *heading) {
    auto *frame = new QGroupBox(area_);
    Controls::Named(frame, Controls::Member("fraStep", step));
    frame->setTitle(step == WizardSteps::Introduction ? QStringLiteral("Introduction Screen")
                    : step == WizardSteps::Finished   ? QStringLiteral("Finished!")
                                                      : QStringLiteral("Step %1").arg(step));
    frame->hide();
    fraStep_[At(step)] = frame;
    auto *row = new QHBoxLayout(frame);
    row->setContentsMargins(gap, gap, gap, gap);
    row->setSpacing(gap);
    row->addWidget(Controls::Named(new StepPicture(QStringLiteral(":/wizard/step-%1.svg").arg(step), frame),
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

QLabel *frmWizard::NewText(const QString &name, const char *text) {
    auto *label = Controls::Named(new QLabel(QString::fromLatin1(text)), name);
    label->setWordWrap(true);
    return label;
}

QLabel *frmWizard::NewSuffix() {
    return Controls::Named(new QLabel(QStringLiteral("Inches")),
                           Controls::Member("LabelSuffix", suffixes_++));
}

void frmWizard::BuildIntroduction() {
    BuildStep(WizardSteps::Introduction, 0,
              "This Wizard will assist you in setting up the Zentrova. Click Next to proceed or Cancel to "
              "abort.")
        ->addStretch();
}

void frmWizard::BuildMode() {
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
        QRadioButton *option = NewOption("OptionZentrovaMode", index, row.caption);
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

// The live distance, and what was recorded of it.
QGridLayout *frmWizard::BuildRecording(int place) {
    auto *grid = new QGridLayout;
    const auto number = [](const QString &name, const char *spoken) {
        auto *label = Controls::Named(new QLabel(WizardSteps::NoReading()), name);
        label->setAccessibleDescription(QString::fromLatin1(spoken)); // its name is the number
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
                    1, 0);
    labelActualDistance_[At(place)] =
        number(Controls::Member("LabelActualDistance", place), "Current Distance");
    labelRecordedDistance_[At(place)] =
        number(Controls::Member("LabelRecordedDistance", place), "Recorded Distance");
    grid->addWidget(labelActualDistance_[At(place)], 0, 1);
    grid->addWidget(labelRecordedDistance_[At(place)], 1, 1);
    grid->addWidget(NewSuffix(), 0, 2);
    grid->addWidget(NewSuffix(), 1, 2);
    QPushButton *record = NewButton(Controls::Member("CommandRecordDistance", place), "&Record");
    connect(record, &QPushButton::clicked, this, [this, place] { Record(place); });
    commandRecordDistance_[At(place)] = record;
    grid->setColumnStretch(4, 1);
    return grid;
}

void frmWizard::BuildEnd(int step) {
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
    AddEntry(*box, [this, place] { return ValidateVoltage(At(place)); });
    auto *row = new QHBoxLayout;
    row->addWidget(box);
    row->addWidget(
        Controls::Named(new QLabel(QStringLiteral("Volts")), Controls::Member("LabelVoltsSuffix", place)));
    row->addStretch();
    column->addLayout(row);
    column->addStretch();
}

void frmWizard::BuildDiameters() {
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
        AddEntry(*box, [this, box, name = row.caption] { return ValidateDiameter(*box, name); });
        grid->addWidget(label, line, 0);
        grid->addWidget(box, line, 1);
        grid->addWidget(NewSuffix(), line, 2);
        ++line;
    }
    grid->setColumnStretch(3, 1);
    column->addLayout(grid);
    column->addStretch();
}

void frmWizard::BuildCoreDistance() {
    QVBoxLayout *column = BuildStep(WizardSteps::CoreDistance, 6, "Core Distance Calibration");
    column->addWidget(NewText(Controls::Member("LabelMaxDistCalDesc", 2),
                              "Load an empty Core and verify current distance reading below. Once verified, "
                              "click the Record button."));
    QGridLayout *grid = BuildRecording(WizardSteps::AtCore);
    grid->addWidget(commandRecordDistance_[WizardSteps::AtCore], 2, 1, 1, 2);
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
        grid->addWidget(Controls::Named(new QLabel(caption), Controls::Member("Label2", line)), line + 4, 0);
        grid->addWidget(row.label, line + 4, 1);
        ++line;
    }
    grid->setRowMinimumHeight(3, gap);
    grid->setRowStretch(line + 4, 1);
    frameGraphic_ = new RollGraphic(fraStep_[WizardSteps::CoreDistance]);
    auto *row = new QHBoxLayout;
    row->addLayout(grid, 1);
    row->addWidget(frameGraphic_, 0, Qt::AlignTop);
    column->addLayout(row);
    column->addStretch();
}

void frmWizard::BuildDrive() {
    QVBoxLayout *column = BuildStep(WizardSteps::Drive, 7, "Select the drive mode that will be used.");
    const char *const captions[] = {"Torque (winders or unwinders)", "Velocity (winders only)"};
    for (int index = 0; index < 2; ++index) {
        optionDriveMode_[At(index)] = NewOption("OptionDriveMode", index, captions[index]);
        column->addWidget(optionDriveMode_[At(index)]);
    }
    column->addStretch();
}

void frmWizard::BuildFinished() {
    QVBoxLayout *column = BuildStep(WizardSteps::Finished, 5,
                                    "Congratulations! You have completed the setup wizard for the Zentrova. "
                                    "Click Finish to accept these settings or Cancel to abort.");
    chkSaveSettings_ = Controls::Named(
        new QCheckBox(QStringLiteral("Save Changes in Zentrova when Wizard closes.")), "chkSaveSettings");
    chkSaveSettings_->setAccessibleName(chkSaveSettings_->text());
    chkSaveSettings_->setToolTip(QStringLiteral("Save parameter changes in Zentrova"));
    chkSaveSettings_->setChecked(true);
    column->addWidget(chkSaveSettings_);
    column->addStretch();
}

QWidget *frmWizard::BuildNavigation() {
    auto *bar = Controls::Named(new QWidget(this), "picNav");
    auto *row = new QHBoxLayout(bar);
    row->setContentsMargins(0, 0, 0, 0);
    struct Row {
        const char *caption;
        void (frmWizard::*work)();
    };
    const Row rows[] = {{"Help", nullptr},
                        {"Cancel", &frmWizard::AskToCancel},
                        {"< &Back", &frmWizard::Back},
                        {"&Next >", &frmWizard::Next},
                        {"&Finish", &frmWizard::Finish}};
    int index = 0;
    for (const Row &entry : rows) {
        QPushButton *button = NewButton(Controls::Member("cmdNav", index), entry.caption);
        if (entry.work != nullptr) {
            connect(button, &QPushButton::clicked, this, [this, work = entry.work] { Press(work); });
        }
        row->addWidget(button);
        if (index == Help) {
            row->addStretch();
        }
        cmdNav_[At(index++)] = button;
    }
    return bar;
}

void frmWizard::SetTabOrder() {
    std::vector<QWidget *> order(optionZentrovaMode_.begin(), optionZentrovaMode_.end());
    for (const std::size_t place : {WizardSteps::AtFarEnd, WizardSteps::AtNearEnd}) {
        order.insert(order.end(), {commandRecordDistance_[place], textVoltageOutput_[place]});
    }
    order.insert(order.end(), {textCoreDia_, textMaxDia_, commandRecordDistance_[WizardSteps::AtCore]});
    order.insert(order.end(), optionDriveMode_.begin(), optionDriveMode_.end());
    order.push_back(chkSaveSettings_);
    order.insert(order.end(), cmdNav_.begin(), cmdNav_.end());
    for (std::size_t i = 1; i < order.size(); ++i) {
        setTabOrder(order[i - 1], order[i]);
    }
}

// All of one size, that of the fullest.
void frmWizard::SizeSteps() {
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
    area_->setFixedSize(width, height);
}

void frmWizard::AddEntry(QLineEdit &box, std::function<bool()> isValid) {
    EntryFocus::SelectAllOnEntry(box);
    // An empty box can be left for a button: Back and Record need nothing of it, Next asks for what is
    // missing.
    EntryFocus::ValidateOnLeave(box, [&box, isValid] {
        const bool forButton = qobject_cast<QAbstractButton *>(QApplication::focusWidget()) != nullptr ||
                               QGuiApplication::keyboardModifiers().testFlag(Qt::AltModifier);
        return (box.text().isEmpty() && forButton) || isValid();
    });
    box.installEventFilter(this);
    entries_.push_back({&box, std::move(isValid)});
}

// Enter in a box is Next, which checks the box itself.
bool frmWizard::eventFilter(QObject *watched, QEvent *event) {
    if (event->type() == QEvent::KeyPress) {
        const auto &key = static_cast<const QKeyEvent &>(*event);
        if (key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter) {
            if (key.isAutoRepeat()) {
                return true; // a key that is held mustn't run through to Finish
            }
            if (qobject_cast<QLineEdit *>(watched) != nullptr) {
                Next();
                return true;
            }
        }
    }
    return QDialog::eventFilter(watched, event);
}

bool frmWizard::ValidateDiameter(QLineEdit &box, const char *name) {
    if (!TextBoxFunctions::ValidateNumericEntry(box, QString::fromLatin1(name), leastDiameter,
                                                greatestDiameter, false, dialogs_)) {
        return false;
    }
    box.setText(ReformatDecimals(box.text(), shownDecimals));
    return true;
}

// The first box is checked whichever is left: it is filled by the time that the second one shows, which so
// takes any value.
bool frmWizard::ValidateVoltage(std::size_t index) {
    QLineEdit &first = *textVoltageOutput_[0];
    if (!TextBoxFunctions::ValidateNumericEntry(first, QStringLiteral("Voltage Level"), 0, greatestVoltage,
                                                false, dialogs_)) {
        first.setFocus(Qt::OtherFocusReason);
        TextBoxFunctions::SelectAllText(first);
        return false;
    }
    QLineEdit &left = *textVoltageOutput_[index];
    left.setText(ReformatDecimals(left.text(), shownDecimals));
    return true;
}

// Whoever gets here without leaving a box, by Enter or as an assistive client does, is asked now.
bool frmWizard::EntriesAreValid() {
    for (const Entry &entry : entries_) {
        if (entry.box->isVisible() && !entry.box->text().isEmpty() && !entry.isValid()) {
            entry.box->setFocus(Qt::OtherFocusReason);
            TextBoxFunctions::SelectAllText(*entry.box);
            return false;
        }
    }
    return true;
}

WizardSteps::Entries frmWizard::Entries() const {
    return {.use = Chosen(optionZentrovaMode_, WizardSteps::Use::Distance, WizardSteps::Use::Diameter),
            .drive =
                Chosen(optionDriveMode_, WizardSteps::DriveMode::Torque, WizardSteps::DriveMode::Velocity),
            .voltage = {textVoltageOutput_[0]->text(), textVoltageOutput_[1]->text()},
            .coreDiameter = textCoreDia_->text(),
            .maxDiameter = textMaxDia_->text(),
            .save = chkSaveSettings_->isChecked()};
}

void frmWizard::Tell(const QString &message) {
    dialogs_.OwnedMessageBox(message, {.icon = BoxIcon::Exclamation, .buttons = BoxButtons::Ok},
                             ApplicationTitle());
}

// A write turns the event loop: what is pressed meanwhile doesn't act on a step that is half-way to another.
// Only the wish to leave is kept until the work is done.
void frmWizard::Work(const std::function<void()> &work) {
    if (atWork_) {
        return;
    }
    leave_ = Leave::No;
    {
        const QScopedValueRollback<bool> guard(atWork_, true);
        work();
    }
    const Leave leave = std::exchange(leave_, Leave::No);
    if (leave == Leave::Ask && isVisible()) {
        AskToCancel();
    } else if (leave == Leave::Close && isVisible()) {
        close();
    }
}

// From the event loop: an assistive client that pressed a button mustn't be kept waiting while a box is open.
// A second press before that is meant for the same step.
void frmWizard::Press(void (frmWizard::*work)()) {
    if (std::exchange(pressed_, true)) {
        return;
    }
    QMetaObject::invokeMethod(
        this,
        [this, work] {
            pressed_ = false;
            if (isVisible()) {
                (this->*work)();
            }
        },
        Qt::QueuedConnection);
}

void frmWizard::Next() {
    Work([this] {
        if (!EntriesAreValid()) {
            return;
        }
        if (const std::optional<QString> message = steps_.Next(Entries())) {
            Tell(*message);
        }
        ShowStep();
    });
}

void frmWizard::Back() {
    Work([this] {
        steps_.Back(Entries());
        ShowRecorded();
        ShowStep();
    });
}

void frmWizard::AskToCancel() {
    if (atWork_) {
        leave_ = Leave::Ask;
        return;
    }
    Work([this] {
        const BoxAnswer answer = dialogs_.OwnedMessageBox(
            QStringLiteral("Are you sure?"), {.icon = BoxIcon::Question, .buttons = BoxButtons::YesNo},
            QStringLiteral("Cancel?"));
        if (answer == BoxAnswer::Yes) {
            steps_.Cancel();
            done(Rejected);
        }
    });
}

// A text that can't be written is told while nothing has been written yet, so that it can be mended.
void frmWizard::Finish() {
    Work([this] {
        const WizardSteps::Entries entries = Entries();
        WizardCalibration::Settings outcome;
        try {
            outcome = steps_.Outcome(entries);
        } catch (const Fault &fault) {
            Tell(fault.Description());
            return;
        }
        chkSaveSettings_->setEnabled(false); // it is taken by now
        steps_.Finish(outcome, entries);
        done(Accepted);
    });
}

void frmWizard::Record(int place) {
    Work([this, place] {
        steps_.Record(static_cast<WizardSteps::Place>(place), Entries());
        ShowRecorded();
        if (place != WizardSteps::AtCore) {
            textVoltageOutput_[At(place)]->setFocus(Qt::OtherFocusReason);
        }
    });
}

void frmWizard::ShowReading() {
    timerUpdate_.setProperty("Tag", steps_.Latest().raw);
    for (QLabel *label : labelActualDistance_) {
        label->setText(steps_.Latest().shown);
    }
}

void frmWizard::ShowRecorded() {
    for (int place = 0; place < WizardSteps::PlaceCount; ++place) {
        const WizardSteps::Reading &recorded = steps_.Recorded(static_cast<WizardSteps::Place>(place));
        labelRecordedDistance_[At(place)]->setText(recorded.shown);
        labelRecordedDistance_[At(place)]->setProperty("Tag", recorded.raw);
    }
    labelDistToCore_->setText(steps_.Roll().distanceToCore);
    labelDistToMax_->setText(steps_.Roll().distanceToMax);
    frameGraphic_->Show(steps_.Roll());
}

void frmWizard::ShowStep() {
    const int step = steps_.CurrentStep();
    cmdNav_[BackButton]->setEnabled(steps_.BackEnabled());
    cmdNav_[NextButton]->setEnabled(steps_.NextEnabled());
    cmdNav_[FinishButton]->setEnabled(steps_.FinishEnabled());
    QGroupBox &shown = *fraStep_[At(step)];
    if (step == shownStep_ && !shown.isHidden()) {
        return;
    }
    cmdNav_[steps_.FinishEnabled() ? FinishButton : NextButton]->setDefault(true);
    frameGraphic_->Show(steps_.Roll());
    QGroupBox &before = *fraStep_[At(std::exchange(shownStep_, step))];
    shown.move(0, 0);
    shown.show();
    FirstControl()->setFocus(Qt::OtherFocusReason);
    if (&before != &shown) {
        before.hide();
        before.move(ParkedLeft(), 0);
    }
}

// Where the user goes on in the step that shows.
QWidget *frmWizard::FirstControl() const {
    const auto chosenOf = [](const std::array<QRadioButton *, 2> &options) {
        return options[1]->isChecked() ? options[1] : options[0];
    };
    switch (steps_.CurrentStep()) {
    case WizardSteps::Mode:
        return chosenOf(optionZentrovaMode_);
    case WizardSteps::FarEnd:
        return commandRecordDistance_[WizardSteps::AtFarEnd];
    case WizardSteps::NearEnd:
        return commandRecordDistance_[WizardSteps::AtNearEnd];
    case WizardSteps::Diameters:
        return textCoreDia_;
    case WizardSteps::CoreDistance:
        return commandRecordDistance_[WizardSteps::AtCore];
    case WizardSteps::Drive:
        return chosenOf(optionDriveMode_);
    case WizardSteps::Finished:
        return cmdNav_[FinishButton];
    case WizardSteps::Introduction:
        break;
    }
    return cmdNav_[NextButton];
}

void frmWizard::reject() {
    AskToCancel();
}

void frmWizard::closeEvent(QCloseEvent *event) {
    if (atWork_) {
        leave_ = Leave::Close;
        event->ignore();
        return;
    }
    event->accept();
    done(Rejected);
}

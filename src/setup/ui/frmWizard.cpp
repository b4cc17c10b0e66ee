#include "setup/ui/frmWizard.h"

#include "model/ParamDefines.h"
#include "setup/ui/ChangesList.h"
#include "setup/ui/StateLabel.h"
#include "support/Fault.h"
#include "support/Numbers.h"
#include "widgets/Controls.h"
#include "widgets/EntryFocus.h"
#include "widgets/FormHelp.h"
#include "widgets/TextBoxFunctions.h"

#include <QApplication>
#include <QCloseEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPointer>
#include <QVBoxLayout>

namespace ztv {

namespace {

constexpr int readEveryMs = 1000;
constexpr int shownDecimals = 2;
constexpr double leastDiameter = 0.01;
constexpr double greatestDiameter = 200;
constexpr double greatestVoltage = 10;

const QString waitingForSensor = QStringLiteral("Waiting for the sensor...");

} // namespace

frmWizard::frmWizard(ClassZentrova &zentrova, UserDialogs &dialogs, ClassMyHtmlHelp &help, QWidget *parent)
    : QDialog(parent),
      zentrova_(zentrova),
      dialogs_(dialogs),
      steps_(zentrova) {
    Controls::Named(this, "frmWizard");
    setWindowTitle(QStringLiteral("Zentrova Setup Wizard"));
    frames_ = new WizardFrames(this);
    auto *column = new QVBoxLayout(this);
    column->addWidget(frames_);
    column->addWidget(BuildNavigation());
    column->setSizeConstraint(QLayout::SetFixedSize);
    FormHelp::Offer(*this, help.Topic(HelpContextID), cmdNav_[Help]);
    SetTabOrder();
    ConnectFrames();
    ShowRecorded();
    ShowStep();
    for (QAbstractButton *button : findChildren<QAbstractButton *>()) {
        button->installEventFilter(this);
    }
    // Enter presses the button that has the focus, and from any other control the default button.
    for (QPushButton *button : findChildren<QPushButton *>()) {
        button->setAutoDefault(true);
    }

    Controls::Named(&timerUpdate_, "TimerUpdate");
    connect(&timerUpdate_, &QTimer::timeout, this, [this] {
        steps_.TakeReading();
        ShowReading();
        ShowCondition();
        ShowChanges();
    });
    timerUpdate_.start(readEveryMs);
    connect(&frames_->SaveSettings(), &QCheckBox::toggled, this, &frmWizard::ShowChanges);
    ShowCondition();
}

QWidget *frmWizard::BuildNavigation() {
    auto *bar = Controls::Named(new QWidget(this), "picNav");
    auto *row = new QHBoxLayout(bar);
    row->setContentsMargins(0, 0, 0, 0);
    waiting_ = Controls::Named(new StateLabel(waitingForSensor, bar), "LabelWaiting");
    waiting_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred); // never makes the window wider
    struct Row {
        const char *caption;
        void (frmWizard::*work)();
    };
    const Row rows[] = {{"Help", nullptr},
                        {"Cancel", &frmWizard::AskToCancel},
                        {"< &Back", &frmWizard::Back},
                        {"&Next >", &frmWizard::Next},
                        {"&Finish", &frmWizard::Finish}};
    std::size_t index = 0;
    for (const Row &entry : rows) {
        auto *button = Controls::Captioned<QPushButton>(Controls::Member("cmdNav", static_cast<int>(index)),
                                                        entry.caption);
        if (entry.work != nullptr) {
            connect(button, &QPushButton::clicked, this, [this, work = entry.work] { Press(work); });
        }
        row->addWidget(button);
        if (index == Help) {
            row->addWidget(waiting_, 1);
        }
        cmdNav_[index++] = button;
    }
    return bar;
}

void frmWizard::SetTabOrder() {
    std::vector<QWidget *> order = frames_->TabOrder();
    order.insert(order.end(), cmdNav_.begin(), cmdNav_.end());
    for (std::size_t i = 1; i < order.size(); ++i) {
        setTabOrder(order[i - 1], order[i]);
    }
}

void frmWizard::ConnectFrames() {
    for (int place = 0; place < WizardSteps::PlaceCount; ++place) {
        connect(&frames_->CommandRecordDistance(place), &QPushButton::clicked, this,
                [this, place] { Record(place); });
    }
    for (const int place : {WizardSteps::AtFarEnd, WizardSteps::AtNearEnd}) {
        AddEntry(frames_->TextVoltageOutput(place), [this, place] { return ValidateVoltage(place); });
    }
    for (QLineEdit *box : {&frames_->TextCoreDia(), &frames_->TextMaxDia()}) {
        AddEntry(*box, [this, box] { return ValidateDiameter(*box); });
    }
}

void frmWizard::AddEntry(QLineEdit &box, std::function<bool()> isValid) {
    EntryFocus::SelectAllOnEntry(box);
    // Permits leaving an empty box for a button: Back and Record don't need its value, and Next reports a
    // missing one.
    EntryFocus::ValidateOnLeave(box, [&box, isValid] {
        const bool forButton = qobject_cast<QAbstractButton *>(QApplication::focusWidget()) != nullptr ||
                               QGuiApplication::keyboardModifiers().testFlag(Qt::AltModifier);
        return (box.text().isEmpty() && forButton) || isValid();
    });
    box.installEventFilter(this);
    entries_.push_back({&box, std::move(isValid)});
}

// Makes Enter in a box act as Next, which validates the box itself.
bool frmWizard::eventFilter(QObject *watched, QEvent *event) {
    if (event->type() == QEvent::KeyPress) {
        const auto &key = static_cast<const QKeyEvent &>(*event);
        if (key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter) {
            if (key.isAutoRepeat()) {
                return true; // a held key mustn't repeat through all steps to Finish
            }
            if (qobject_cast<QLineEdit *>(watched) != nullptr) {
                Next();
                return true;
            }
        }
    }
    return QDialog::eventFilter(watched, event);
}

bool frmWizard::ValidateDiameter(QLineEdit &box) {
    if (!TextBoxFunctions::ValidateNumericEntry(box, box.accessibleName(), leastDiameter, greatestDiameter,
                                                false, dialogs_)) {
        return false;
    }
    box.setText(ReformatDecimals(box.text(), shownDecimals));
    return true;
}

// Validates the first box, whichever box the user leaves. The first one is filled before the second is shown,
// so the second one accepts any value.
bool frmWizard::ValidateVoltage(int place) {
    QLineEdit &first = frames_->TextVoltageOutput(WizardSteps::AtFarEnd);
    if (!TextBoxFunctions::ValidateNumericEntry(first, QStringLiteral("Voltage Level"), 0, greatestVoltage,
                                                false, dialogs_)) {
        first.setFocus(Qt::OtherFocusReason);
        TextBoxFunctions::SelectAllText(first);
        return false;
    }
    QLineEdit &left = frames_->TextVoltageOutput(place);
    left.setText(ReformatDecimals(left.text(), shownDecimals));
    return true;
}

// Validates here for a press that doesn't leave a box first: Enter, or the press of an assistive client.
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

// Calls `work` from the event loop, so that an assistive client that pressed a button isn't blocked while a
// box is open. Ignores a second press before that call, which was meant for the same step, and a press behind
// a box.
void frmWizard::Press(void (frmWizard::*work)()) {
    if (std::exchange(pressed_, true)) {
        return;
    }
    QMetaObject::invokeMethod(
        this,
        [this, work] {
            pressed_ = false;
            const QWidget *modal = QApplication::activeModalWidget();
            if (isVisible() && !leaving_ && (modal == nullptr || modal == this)) {
                (this->*work)();
            }
        },
        Qt::QueuedConnection);
}

void frmWizard::Next() {
    if (!EntriesAreValid()) {
        return;
    }
    if (const std::optional<QString> message = steps_.Next(frames_->Entries())) {
        Warn(dialogs_, *message);
    }
    ShowStep();
}

void frmWizard::Back() {
    steps_.Back(frames_->Entries());
    ShowRecorded();
    ShowStep();
}

void frmWizard::AskToCancel() {
    const BoxStyle question{
        .icon = BoxIcon::Question, .buttons = BoxButtons::YesNo, .informativeText = WhatCancelDoes()};
    if (dialogs_.OwnedMessageBox(QStringLiteral("Are you sure?"), question, QStringLiteral("Cancel?")) ==
        BoxAnswer::Yes) {
        Q_EMIT Asked(steps_.SavedRange());
        steps_.Cancel();
        CloseOnceSent(Rejected);
    }
}

QString frmWizard::WhatCancelDoes() const {
    const QString nothing = QStringLiteral("Nothing has been written.");
    if (!steps_.RangeIsChanged()) {
        return nothing;
    }
    return nothing + (reading_.Answers(LiveReading::Clock::now())
                          ? QStringLiteral(" Min and Max Range go back.")
                          : QStringLiteral(" Min and Max Range can't go back: the sensor doesn't answer."));
}

// Reports a text that can't be written before anything is written, so that the user can correct it.
void frmWizard::Finish() {
    const WizardSteps::Entries entries = frames_->Entries();
    WizardCalibration::Settings outcome;
    try {
        outcome = steps_.Outcome(entries);
    } catch (const Fault &fault) {
        Warn(dialogs_, fault.Description());
        return;
    }
    Q_EMIT Asked(steps_.Values(outcome, entries));
    steps_.Finish(outcome, entries);
    CloseOnceSent(Accepted);
}

// Stays open until the writes are sent, because the user could go offline before from the main form.
void frmWizard::CloseOnceSent(int result) {
    leaving_ = true;
    frames_->setEnabled(false);
    for (QPushButton *button : cmdNav_) {
        button->setEnabled(false);
    }
    zentrova_.WhenWritesAreSent([wizard = QPointer(this), result] {
        if (wizard) {
            wizard->done(result);
        }
    });
}

void frmWizard::Record(int place) {
    steps_.Record(static_cast<WizardSteps::Place>(place), frames_->Entries());
    ShowRecorded();
    if (place != WizardSteps::AtCore) {
        frames_->TextVoltageOutput(place).setFocus(Qt::OtherFocusReason);
    }
}

void frmWizard::ShowReading() {
    timerUpdate_.setProperty("Tag", steps_.Latest().RawText());
    frames_->ShowReading(steps_.Latest());
}

void frmWizard::ShowState(ValueState state) {
    reading_.Become(state);
    ShowCondition();
}

void frmWizard::TakePoll() {
    reading_.Take({.raw = zentrova_.ParamValue(ParamDefines::ActualDistance),
                   .hasEcho = zentrova_.ParamValue(ParamDefines::EchoReceived) != 0,
                   .time = LiveReading::Clock::now()});
    ShowCondition();
    ShowChanges();
}

void frmWizard::ShowCondition() {
    const LiveReading::Clock::time_point now = LiveReading::Clock::now();
    frames_->ShowCondition(LiveReading::ToneOf(reading_.Judge(now)), reading_.Words(now));
    waiting_->Show(LiveReading::Tone::Caution, reading_.Answers(now) ? QString() : waitingForSensor);
}

// While the wizard closes, keeps the list of what it has just asked for.
void frmWizard::ShowChanges() {
    if (steps_.CurrentStep() != WizardSteps::Finished || leaving_) {
        return;
    }
    try {
        frames_->Changes().Show(steps_.Changes(frames_->Entries()));
    } catch (const Fault &fault) {
        frames_->Changes().Show({}, fault.Description());
    }
}

void frmWizard::ShowRecorded() {
    for (int place = 0; place < WizardSteps::PlaceCount; ++place) {
        frames_->ShowRecorded(place, steps_.Recorded(static_cast<WizardSteps::Place>(place)));
    }
    frames_->ShowRoll(steps_.Roll());
}

void frmWizard::ShowStep() {
    cmdNav_[BackButton]->setEnabled(steps_.BackEnabled());
    cmdNav_[NextButton]->setEnabled(steps_.NextEnabled());
    cmdNav_[FinishButton]->setEnabled(steps_.FinishEnabled());
    if (std::exchange(shownStep_, steps_.CurrentStep()) == steps_.CurrentStep()) {
        return;
    }
    QPushButton &goesOn = *cmdNav_[steps_.FinishEnabled() ? FinishButton : NextButton];
    goesOn.setDefault(true);
    frames_->ShowRoll(steps_.Roll());
    ShowChanges();
    frames_->ShowStep(steps_.CurrentStep(), goesOn);
}

void frmWizard::reject() {
    if (!leaving_) {
        AskToCancel();
    }
}

void frmWizard::closeEvent(QCloseEvent *event) {
    if (leaving_) {
        event->ignore();
        return;
    }
    event->accept();
    done(Rejected);
}

} // namespace ztv

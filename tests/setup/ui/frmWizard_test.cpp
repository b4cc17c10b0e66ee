#include "setup/ui/frmWizard.h"

#include "model/ParamDefines.h"
#include "support/ApplicationTitle.h"
#include "tests/helpers/FakeLink.h"
#include "tests/helpers/Form.h"
#include "tests/helpers/HelpOfForm.h"
#include "tests/helpers/Printers.h"
#include "tests/helpers/ScriptedDialogs.h"
#include "tests/helpers/TestPresets.h"
#include "tests/helpers/Wait.h"

#include <QApplication>
#include <QKeyEvent>
#include <QTest>
#include <QTreeWidget>
#include <array>
#include <gtest/gtest.h>

namespace ztv {

class FrmWizardTest : public testing::Test {
protected:
    using Writes = std::vector<std::pair<int, int>>;

    FrmWizardTest() {
        zentrova_.ParamUpdate(ParamDefines::MinRange, 1000);
        zentrova_.ParamUpdate(ParamDefines::MaxRange, 20000);
        zentrova_.ConnectTo(&link_);
    }

    // Opens a new wizard, as the program does each time.
    void Open() {
        form_.emplace(zentrova_, dialogs_, help_);
        form_->show();
        form_->activateWindow();
        EXPECT_TRUE(WaitUntil([this] { return form_->isActiveWindow(); }));
    }
    Form Ui() { return Form(*form_); }

    // Sets the polled value and lets the second pass until the wizard shows it.
    void SetDistance(int raw) {
        zentrova_.ParamUpdate(ParamDefines::ActualDistance, raw);
        auto &timer = Ui().Get<QTimer>("TimerUpdate");
        const QString text = QString::number(raw);
        timer.setInterval(1);
        EXPECT_TRUE(WaitUntil([&] { return timer.property("Tag").toString() == text; }));
        timer.setInterval(1000);
    }

    void Next() { Ui().Press("cmdNav(3)"); }
    void Back() { Ui().Press("cmdNav(2)"); }
    void Choose(const char *option) { Ui().Get<QAbstractButton>(option).click(); }
    void Type(const char *box, const char *text) {
        Ui().Get<QLineEdit>(box).setFocus();
        Ui().Get<QLineEdit>(box).selectAll();
        QTest::keyClicks(&Ui().Get<QLineEdit>(box), QString::fromLatin1(text));
    }
    static void Key(Qt::Key key) { QTest::keyClick(QApplication::focusWidget(), key); }

    static void Enter() {
        Key(Qt::Key_Return);
        Settle();
    }

    void ExpectQuestion(BoxAnswer answer) {
        dialogs_.Expect(QStringLiteral("Are you sure?"), BoxIcon::Question, BoxButtons::YesNo, answer, {},
                        QStringLiteral("Cancel?"));
    }

    void ExpectStep(int step) {
        for (int index = 0; index < 8; ++index) {
            const QByteArray name = QByteArray("fraStep(") + QByteArray::number(index) + ")";
            const auto &frame = Ui().Get<QWidget>(name.constData());
            EXPECT_EQ(frame.isVisible(), index == step) << index;
            EXPECT_EQ(frame.x(), index == step ? 0 : -667) << index;
        }
    }

    void GoToFarEnd() {
        Open();
        Next();
        Choose("OptionZentrovaMode(0)");
        Next();
    }
    void FinishDistanceRoute(const char *nearVoltage) {
        GoToFarEnd();
        SetDistance(20000);
        Ui().Press("CommandRecordDistance(0)");
        Type("TextVoltageOutput(0)", "10");
        Next();
        SetDistance(3000);
        Ui().Press("CommandRecordDistance(1)");
        Type("TextVoltageOutput(1)", nearVoltage);
        Next();
        ExpectStep(7);
        link_.writes.clear();
    }
    void GoToCore() {
        Open();
        Next();
        Choose("OptionZentrovaMode(1)");
        Next();
        Type("TextCoreDia", "3");
        Type("TextMaxDia", "24");
        Next();
    }

    ScriptedDialogs dialogs_;
    HelpOfForm help_;
    ClassZentrova zentrova_{ShippedPresetsFolder()};
    FakeLink link_;
    std::optional<frmWizard> form_;
    const QString notRecorded_ = QStringLiteral("You must click the Record button to proceed.");
    const QString badVoltage_ =
        QStringLiteral("Please enter a numeric value between\n0 and 10 for Voltage Level.");
};

TEST_F(FrmWizardTest, HasItsControls) {
    Open();
    EXPECT_EQ(form_->windowTitle(), QStringLiteral("Zentrova Setup Wizard"));
    const char *texts[][2] = {
        {"lblStep(0)",
         "This Wizard will assist you in setting up the Zentrova. Click Next to proceed or Cancel to abort."},
        {"lblStep(1)", "Please select the desired mode of operation below and then click Next."},
        {"lblStep(2)", "Far (Maximum) Distance Calibration"},
        {"lblStep(3)", "Near (Minimum) Distance Calibration"},
        {"lblStep(4)",
         "Enter the Core and Max diameter values below. If multiple size cores and max diameters "
         "are used, enter the smallest Core diameter and the largest Max diameter."},
        {"lblStep(5)",
         "Congratulations! You have completed the setup wizard for the Zentrova. Click Finish to "
         "accept these settings or Cancel to abort."},
        {"lblStep(6)", "Core Distance Calibration"},
        {"lblStep(7)", "Select the drive mode that will be used."},
        {"OptionZentrovaMode(0)", "Distance"},
        {"OptionZentrovaMode(1)", "Diameter"},
        {"lblDistDesc", "Select this mode if the Zentrova simply provides a signal proportional to the "
                        "distance."},
        {"lblDiaDesc", "Select this mode if the Zentrova provides a reference DIRECTLY to a velocity or "
                       "torque mode drive in a "
                       "center-driven winder/unwinder application. NOTE: This method is typically NOT "
                       "selected when interfacing "
                       "the unit to a Ostrel KT or Brava Max unit as these devices already have diameter "
                       "compensating setups. "
                       "In these cases, the Distance method should be selected."},
        {"LabelMaxDistCalDesc(0)",
         "Place target at maximum distance from Zentrova and verify current distance reading below. Once "
         "verified, click the Record button."},
        {"LabelMaxDistCalDesc(1)",
         "Enter the desired output voltage level from the Zentrova when at the above "
         "distance and then click Next."},
        {"LabelMinDistCalDesc(0)",
         "Place target at the minimum distance from the Zentrova and verify current distance reading below. "
         "Once verified, click the Record button."},
        {"LabelMinDistCalDesc(1)",
         "Enter the desired output voltage level from the Zentrova when at the above "
         "distance and then click Next."},
        {"OptionDriveMode(0)", "Torque (winders or unwinders)"},
        {"OptionDriveMode(1)", "Velocity (winders only)"},
        {"LabelCurrentDist(0)", "Current Distance:"},
        {"LabelRecordedDist(2)", "Recorded Distance:"},
        {"CommandRecordDistance(0)", "&Record"},
        {"CommandRecordDistance(1)", "&Record"},
        {"CommandRecordDistance(2)", "&Record"},
        {"LabelVoltsSuffix(0)", "Volts"},
        {"LabelVoltsSuffix(1)", "Volts"},
        {"LabelSuffix(0)", "Inches"},
        {"LabelSuffix(7)", "Inches"},
        {"Label1(0)", "Core Diameter"},
        {"Label1(1)", "Max Diameter"},
        {"Label2(0)", "Distance to Core:"},
        {"Label2(1)", "Distance to Max:"},
        {"TextVoltageOutput(0)", ""},
        {"TextVoltageOutput(1)", ""},
        {"TextCoreDia", ""},
        {"TextMaxDia", ""},
        {"chkSaveSettings", "Save Changes in Zentrova when Wizard closes."},
        {"LabelMaxDistCalDesc(2)",
         "Load an empty Core and verify current distance reading below. Once verified, "
         "click the Record button."},
        {"cmdNav(0)", "Help"},
        {"cmdNav(1)", "Cancel"},
        {"cmdNav(2)", "< &Back"},
        {"cmdNav(3)", "&Next >"},
        {"cmdNav(4)", "&Finish"}};
    for (const auto &row : texts) {
        EXPECT_EQ(Ui().Text(row[0]), QString::fromLatin1(row[1]));
    }
    for (const char *name : {"LabelActualDistance(0)", "LabelActualDistance(1)", "LabelActualDistance(2)",
                             "LabelRecordedDistance(0)", "LabelRecordedDistance(1)",
                             "LabelRecordedDistance(2)", "LabelDistToCore", "LabelDistToMax",
                             "LabelGraphic(0)", "LabelGraphic(1)", "LabelGraphic(2)", "LabelGraphic(3)"}) {
        EXPECT_EQ(Ui().Text(name), QStringLiteral("---.--")) << name;
    }
    const char *captions[] = {
        "Introduction Screen", "Step 1", "Step 2", "Step 3", "Step 4", "Step 5", "Step 6", "Finished!"};
    for (int step = 0; step < 8; ++step) {
        const QByteArray index = "(" + QByteArray::number(step) + ")";
        const auto &frame = Ui().Get<QGroupBox>(("fraStep" + index).constData());
        EXPECT_EQ(frame.title(), QString::fromLatin1(captions[step]));
        EXPECT_EQ(frame.size(), Ui().Get<QWidget>("fraStep(0)").size());
        EXPECT_GE(frame.height(), frame.heightForWidth(frame.width()));
        EXPECT_GE(frame.width(), frame.minimumSizeHint().width());
        EXPECT_FALSE(Ui().Get<QWidget>(("imgStep" + index).constData()).size().isEmpty());
    }
    for (const char *name : {"FrameGraphic", "ShapeCore", "ShapeMax", "picNav"}) {
        Ui().Get<QWidget>(name);
    }
    const char *toolTips[][2] = {{"TextVoltageOutput(0)", "Desired output voltage at maximum distance"},
                                 {"TextVoltageOutput(1)", "Desirerd output voltage at minimum distance"},
                                 {"TextMaxDia", "Diameter of a full roll"},
                                 {"TextCoreDia", "Diameter of an empty core"},
                                 {"chkSaveSettings", "Save parameter changes in Zentrova"}};
    for (const auto &row : toolTips) {
        EXPECT_EQ(Ui().Get<QWidget>(row[0]).toolTip(), QString::fromLatin1(row[1]));
        EXPECT_FALSE(Ui().Get<QWidget>(row[0]).accessibleName().isEmpty()) << row[0];
    }
    EXPECT_TRUE(Ui().Get<QCheckBox>("chkSaveSettings").isChecked());
    EXPECT_EQ(Ui().Get<QTimer>("TimerUpdate").interval(), 1000);
    EXPECT_TRUE(Ui().Get<QTimer>("TimerUpdate").isActive());
    ExpectStep(0);
    EXPECT_FALSE(Ui().Enabled("cmdNav(2)"));
    EXPECT_FALSE(Ui().Enabled("cmdNav(4)"));
}

TEST_F(FrmWizardTest, LeadsThroughTheDistanceRouteAndWritesIt) {
    FinishDistanceRoute("0");
    EXPECT_FALSE(Ui().Enabled("cmdNav(3)"));
    EXPECT_EQ(Ui().Text("TextVoltageOutput(0)"), QStringLiteral("10.00"));
    EXPECT_EQ(Ui().Get<QWidget>("LabelRecordedDistance(0)").property("Tag").toString(),
              QStringLiteral("20000"));
    Back();
    ExpectStep(3);
    EXPECT_FALSE(Ui().Enabled("cmdNav(4)"));
    Next();
    Ui().Press("cmdNav(4)");
    EXPECT_FALSE(form_->isVisible());
    EXPECT_EQ(link_.writes, (Writes{{29, 20000}, {28, 3000}, {25, 20500}, {24, 2500}, {1, 1}}));
}

TEST_F(FrmWizardTest, LeadsThroughTheDiameterRouteAndWritesIt) {
    GoToCore();
    ExpectStep(5);
    EXPECT_EQ(Ui().Text("LabelGraphic(0)"), QStringLiteral("3.00"));
    EXPECT_EQ(Ui().Text("LabelGraphic(1)"), QStringLiteral("24.00"));
    SetDistance(6000);
    EXPECT_EQ(Ui().Text("LabelActualDistance(2)"), QStringLiteral("60.00"));
    Ui().Press("CommandRecordDistance(2)");
    for (const char *name : {"LabelRecordedDistance(2)", "LabelDistToCore", "LabelGraphic(2)"}) {
        EXPECT_EQ(Ui().Text(name), QStringLiteral("60.00")) << name;
    }
    for (const char *name : {"LabelDistToMax", "LabelGraphic(3)"}) {
        EXPECT_EQ(Ui().Text(name), QStringLiteral("49.50")) << name;
    }
    Next();
    dialogs_.ExpectNotice(QStringLiteral("Please select the drive mode."));
    Next();
    Choose("OptionDriveMode(0)");
    Next();
    ExpectStep(7);
    Choose("chkSaveSettings");
    link_.writes.clear();
    Ui().Press("cmdNav(4)");
    EXPECT_EQ(link_.writes, (Writes{{29, 6000}, {28, 4950}, {25, 6500}, {24, 4450}, {37, 125}, {36, 1000}}));
}

TEST_F(FrmWizardTest, ForgetsTheCoreOnTheWayBackToTheDiameters) {
    GoToCore();
    SetDistance(6000);
    Ui().Press("CommandRecordDistance(2)");
    Back();
    ExpectStep(4);
    for (const char *name : {"LabelRecordedDistance(2)", "LabelDistToCore", "LabelDistToMax",
                             "LabelGraphic(2)", "LabelGraphic(3)"}) {
        EXPECT_EQ(Ui().Text(name), QStringLiteral("---.--")) << name;
    }
    EXPECT_EQ(Ui().Get<QWidget>("LabelRecordedDistance(2)").property("Tag").toString(), QString());
    Next();
    dialogs_.ExpectNotice(notRecorded_);
    Next();
    ExpectStep(5);
}

TEST_F(FrmWizardTest, AsksForWhatIsMissing) {
    Open();
    Next();
    dialogs_.ExpectNotice(QStringLiteral("Please select a mode."));
    Next();
    Choose("OptionZentrovaMode(0)");
    Next();
    dialogs_.ExpectNotice(notRecorded_);
    Next();
    dialogs_.ExpectNotice(notRecorded_);
    Ui().Press("CommandRecordDistance(0)"); // before the first reading
    Next();
    SetDistance(20000);
    Ui().Press("CommandRecordDistance(0)");
    EXPECT_TRUE(Ui().Get<QLineEdit>("TextVoltageOutput(0)").hasFocus());
    dialogs_.ExpectNotice(QStringLiteral("Please enter an output voltage value."));
    Next();
    ExpectStep(2);
}

TEST_F(FrmWizardTest, LetsAnEmptyBoxBeLeftForAButton) {
    GoToFarEnd();
    SetDistance(20000);
    Ui().Press("CommandRecordDistance(0)");
    SetDistance(20100);
    Ui().Press("CommandRecordDistance(0)");
    EXPECT_EQ(Ui().Text("LabelRecordedDistance(0)"), QStringLiteral("201.00"));
    Back();
    ExpectStep(1);
    Next();
    EXPECT_EQ(Ui().Text("LabelRecordedDistance(0)"), QStringLiteral("201.00"));
}

TEST_F(FrmWizardTest, RefusesAVoltageOutOfRangeAndSelectsIt) {
    GoToFarEnd();
    SetDistance(20000);
    Ui().Press("CommandRecordDistance(0)");
    auto &box = Ui().Get<QLineEdit>("TextVoltageOutput(0)");
    for (const char *text : {"10.01", "-1", "abc"}) {
        Type("TextVoltageOutput(0)", text);
        dialogs_.ExpectNotice(badVoltage_);
        Next();
        ExpectStep(2);
        EXPECT_TRUE(box.hasFocus());
        EXPECT_EQ(box.selectedText(), QString::fromLatin1(text));
    }
    Type("TextVoltageOutput(0)", "2.345");
    Key(Qt::Key_Tab);
    EXPECT_EQ(box.text(), QStringLiteral("2.35"));
    EXPECT_FALSE(box.hasFocus());
}

TEST_F(FrmWizardTest, RefusesDiametersOutOfRange) {
    Open();
    Next();
    Choose("OptionZentrovaMode(1)");
    Next();
    EXPECT_TRUE(Ui().Get<QLineEdit>("TextCoreDia").hasFocus());
    dialogs_.ExpectNotice(QStringLiteral("Please enter a value for Core Diameter."));
    Next();
    dialogs_.ExpectNotice(
        QStringLiteral("Please enter a numeric value between\n0.01 and 200 for Core Diameter."));
    Type("TextCoreDia", "0");
    Key(Qt::Key_Tab);
    Type("TextCoreDia", "200");
    Key(Qt::Key_Tab);
    EXPECT_EQ(Ui().Text("TextCoreDia"), QStringLiteral("200.00"));
    dialogs_.ExpectNotice(
        QStringLiteral("Please enter a numeric value between\n0.01 and 200 for Max Diameter."));
    Type("TextMaxDia", "200.01");
    Next();
    dialogs_.ExpectNotice(QStringLiteral("The 'Max Diameter' must be greater than the 'Core Diameter'."));
    Type("TextMaxDia", "200");
    Next();
    ExpectStep(4);
}

// An assistive client presses a button without leaving the box that has the focus.
TEST_F(FrmWizardTest, RefusesABadEntryHoweverNextIsPressed) {
    Open();
    Next();
    Choose("OptionZentrovaMode(1)");
    Next();
    auto &core = Ui().Get<QLineEdit>("TextCoreDia");
    core.setText(QStringLiteral("x"));
    Ui().Get<QLineEdit>("TextMaxDia").setText(QStringLiteral("y"));
    core.setFocus();
    dialogs_.ExpectNotice(
        QStringLiteral("Please enter a numeric value between\n0.01 and 200 for Core Diameter."));
    Ui().Get<QAbstractButton>("cmdNav(3)").click();
    Settle();
    EXPECT_TRUE(dialogs_.AllCame());
    ExpectStep(4);
    EXPECT_TRUE(core.hasFocus());
    EXPECT_EQ(core.selectedText(), QStringLiteral("x"));
}

TEST_F(FrmWizardTest, TakesAnyNearVoltage) {
    FinishDistanceRoute("25");
    EXPECT_EQ(Ui().Text("TextVoltageOutput(1)"), QStringLiteral("25.00"));
    Ui().Press("cmdNav(4)");
    EXPECT_EQ(link_.writes, (Writes{{29, 20000}, {28, 3000}, {25, 20500}, {24, 2500}, {36, 2500}, {1, 1}}));
}

TEST_F(FrmWizardTest, TellsOfANearVoltageThatIsNoNumberBeforeItWritesAnything) {
    FinishDistanceRoute("5v");
    dialogs_.ExpectNotice(QStringLiteral("Type mismatch: \"5v\" isn't a number"));
    Ui().Press("cmdNav(4)");
    EXPECT_TRUE(form_->isVisible());
    EXPECT_TRUE(link_.writes.empty());
    Back();
    Type("TextVoltageOutput(1)", "5");
    Next();
    Ui().Press("cmdNav(4)");
    EXPECT_FALSE(form_->isVisible());
    EXPECT_FALSE(link_.writes.empty());
}

TEST_F(FrmWizardTest, PutsTheRangeBackOnCancelAndEscapeIfTheUserIsSure) {
    const std::function<void()> ways[] = {[this] { Ui().Press("cmdNav(1)"); }, [] { Key(Qt::Key_Escape); }};
    for (const auto &leave : ways) {
        zentrova_.ParamValue(ParamDefines::MinRange, 1000);
        zentrova_.ParamValue(ParamDefines::MaxRange, 20000);
        Open();
        Next();
        link_.writes.clear();
        ExpectQuestion(BoxAnswer::No);
        leave();
        EXPECT_TRUE(form_->isVisible());
        EXPECT_TRUE(link_.writes.empty());
        ExpectQuestion(BoxAnswer::Yes);
        leave();
        EXPECT_FALSE(form_->isVisible());
        EXPECT_EQ(link_.writes, (Writes{{24, 1000}, {25, 20000}}));
    }
}

TEST_F(FrmWizardTest, PutsNothingBackWhenItsFrameIsClosed) {
    Open();
    Next();
    link_.writes.clear();
    form_->close();
    EXPECT_FALSE(form_->isVisible());
    EXPECT_TRUE(link_.writes.empty());
}

TEST_F(FrmWizardTest, CanBeUsedByKeyboardAlone) {
    Open();
    Enter();
    ExpectStep(1);
    Key(Qt::Key_Space);
    EXPECT_TRUE(Ui().Get<QAbstractButton>("OptionZentrovaMode(0)").isChecked());
    Enter();
    ExpectStep(2);
    SetDistance(20000);
    Enter(); // Record has the focus
    QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("10"));
    Enter();
    ExpectStep(3);
    Key(Qt::Key_Space);
    QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("0"));
    Key(Qt::Key_Backtab);
    EXPECT_TRUE(Ui().Get<QWidget>("CommandRecordDistance(1)").hasFocus());
    for (const char *name : {"TextVoltageOutput(1)", "cmdNav(0)", "cmdNav(1)", "cmdNav(2)", "cmdNav(3)"}) {
        Key(Qt::Key_Tab);
        EXPECT_TRUE(Ui().Get<QWidget>(name).hasFocus()) << name;
    }
    Enter();
    ExpectStep(7);
    Enter();
    EXPECT_FALSE(form_->isVisible());
}

TEST_F(FrmWizardTest, OffersItsHelp) {
    Open();
    Ui().Press("cmdNav(0)");
    EXPECT_TRUE(help_.WasAskedFor(frmWizard::HelpContextID, *form_));
    Key(Qt::Key_F1);
    EXPECT_TRUE(help_.WasAskedFor(frmWizard::HelpContextID, *form_));
    ExpectStep(0);
}

TEST_F(FrmWizardTest, DoesNotRunThroughItsStepsByAKeyThatIsHeld) {
    Open();
    for (int held = 0; held < 3; ++held) {
        QKeyEvent again(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, QStringLiteral("\r"), true);
        QApplication::sendEvent(QApplication::focusWidget(), &again);
        Settle();
    }
    ExpectStep(0);
    Enter();
    ExpectStep(1);
}

TEST_F(FrmWizardTest, StaysUntilTheWritesOfFinishAreSentAndIgnoresAllThatIsPressed) {
    FinishDistanceRoute("0");
    link_.holds = true;
    Ui().Press("cmdNav(4)");
    for (int ended = 0; ended < 4; ++ended) {
        ASSERT_TRUE(form_->isVisible()) << ended;
        for (const char *name : {"cmdNav(1)", "cmdNav(2)", "cmdNav(4)"}) {
            Ui().Get<QAbstractButton>(name).click();
        }
        QTest::keyClick(&*form_, Qt::Key_Escape);
        form_->close();
        Settle();
        link_.EndWrite(zentrova_);
    }
    EXPECT_FALSE(form_->isVisible());
    EXPECT_EQ(link_.writes, (Writes{{29, 20000}, {28, 3000}, {25, 20500}, {24, 2500}, {1, 1}}));
}

TEST_F(FrmWizardTest, GoesOnWhileItsWritesWait) {
    Open();
    link_.holds = true;
    Next();
    ExpectStep(1);
    Back();
    ExpectStep(0);
    link_.EndWrites(zentrova_);
    EXPECT_EQ(link_.writes, (Writes{{24, 600}, {25, 42000}}));
}

TEST_F(FrmWizardTest, RestoresTheRangeBehindTheWritesThatWait) {
    const std::int32_t minRange = zentrova_.ParamValue(ParamDefines::MinRange);
    const std::int32_t maxRange = zentrova_.ParamValue(ParamDefines::MaxRange);
    Open();
    link_.holds = true;
    Next();
    ExpectQuestion(BoxAnswer::Yes);
    Ui().Press("cmdNav(1)");
    EXPECT_TRUE(form_->isVisible());
    link_.EndWrites(zentrova_);
    EXPECT_FALSE(form_->isVisible());
    // The one of Next was on the line; the other still waited and is replaced.
    EXPECT_EQ(link_.writes, (Writes{{24, 600}, {25, maxRange}, {24, minRange}}));
}

TEST_F(FrmWizardTest, ClosesByItsFrameWhileItsWritesWait) {
    Open();
    link_.holds = true;
    Next();
    form_->close();
    EXPECT_FALSE(form_->isVisible());
    link_.EndWrites(zentrova_);
    EXPECT_EQ(link_.writes, (Writes{{24, 600}, {25, 42000}}));
}

TEST_F(FrmWizardTest, WritesTheRestIntoTheTableWhenTheLinkEndsMeanwhile) {
    FinishDistanceRoute("1");
    link_.onStart = [this] { link_.open = link_.writes.size() < 2; };
    Ui().Press("cmdNav(4)");
    EXPECT_FALSE(form_->isVisible());
    EXPECT_EQ(link_.writes, (Writes{{29, 20000}, {28, 3000}}));
    EXPECT_EQ(zentrova_.ParamValue(ParamDefines::MaxRange), 20500);
    EXPECT_EQ(zentrova_.ParamValue(ParamDefines::NearVoltage), 100);
}

TEST_F(FrmWizardTest, ShowsTheDistanceOfEverySecondWhateverStepShows) {
    Open();
    zentrova_.ParamUpdate(ParamDefines::ActualDistance, 1234);
    EXPECT_TRUE(
        WaitUntil([this] { return Ui().Text("LabelActualDistance(0)") == QStringLiteral("12.34"); }, 3000));
    EXPECT_EQ(Ui().Text("LabelActualDistance(1)"), QStringLiteral("12.34"));
    EXPECT_EQ(Ui().Text("LabelActualDistance(2)"), QStringLiteral("12.34"));
}

TEST_F(FrmWizardTest, APressReturnsBeforeItsBoxOpens) {
    Open();
    Next();
    bool returned = false;
    dialogs_.ExpectNotice(QStringLiteral("Please select a mode."), BoxIcon::Exclamation, ApplicationTitle(),
                          [&returned] { EXPECT_TRUE(returned); });
    Ui().Get<QAbstractButton>("cmdNav(3)").click();
    returned = true;
    Settle();
}

TEST_F(FrmWizardTest, TakesADoubleClickForOne) {
    Open();
    Ui().Get<QAbstractButton>("cmdNav(3)").click();
    Ui().Get<QAbstractButton>("cmdNav(3)").click();
    Settle();
    ExpectStep(1);
}

TEST_F(FrmWizardTest, ForgetsAPressWhenItsFrameIsClosedFirst) {
    FinishDistanceRoute("0");
    Ui().Get<QAbstractButton>("cmdNav(4)").click();
    form_->close();
    Settle();
    EXPECT_TRUE(link_.writes.empty());
}

TEST_F(FrmWizardTest, FollowsTheMnemonicsFromAnEmptyBoxToo) {
    GoToFarEnd();
    SetDistance(20000);
    Ui().Press("CommandRecordDistance(0)");
    SetDistance(20100);
    // The button shows itself pressed for a moment first.
    QTest::keyClick(form_->windowHandle(), Qt::Key_R, Qt::AltModifier);
    EXPECT_TRUE(
        WaitUntil([this] { return Ui().Text("LabelRecordedDistance(0)") == QStringLiteral("201.00"); }));
    QTest::keyClick(form_->windowHandle(), Qt::Key_B, Qt::AltModifier);
    EXPECT_TRUE(WaitUntil([this] { return Ui().Get<QWidget>("fraStep(1)").isVisible(); }));
    ExpectStep(1);
}

TEST_F(FrmWizardTest, DoesNotLetAnEmptyBoxBeLeftForTheOtherOne) {
    Open();
    Next();
    Choose("OptionZentrovaMode(1)");
    Next();
    dialogs_.ExpectNotice(
        QStringLiteral("Please enter a numeric value between\n0.01 and 200 for Core Diameter."));
    Key(Qt::Key_Tab);
    EXPECT_TRUE(Ui().Get<QLineEdit>("TextCoreDia").hasFocus());
}

class FrmWizardConditionTest : public FrmWizardTest {
protected:
    void Poll(int distance, bool hasEcho = true) {
        zentrova_.ParamUpdate(ParamDefines::ActualDistance, distance);
        zentrova_.ParamUpdate(ParamDefines::EchoReceived, hasEcho ? 1 : 0);
        form_->TakePoll();
    }
    const QLabel &Label(int place) {
        return Ui().Get<QLabel>(qPrintable(QStringLiteral("LabelCondition(%1)").arg(place)));
    }
    void ExpectConditions(const char *words) {
        for (int place = 0; place < 3; ++place) {
            EXPECT_EQ(Label(place).text(), QString::fromUtf8(words));
            EXPECT_EQ(Label(place).accessibleName(), QString::fromUtf8(words));
        }
    }
    std::vector<std::array<QString, 3>> Listed() {
        std::vector<std::array<QString, 3>> rows;
        const auto &list = Ui().Get<QTreeWidget>("ListChanges");
        for (int row = 0; row < list.topLevelItemCount(); ++row) {
            const QTreeWidgetItem &item = *list.topLevelItem(row);
            rows.push_back({item.text(0), item.text(1), item.text(2)});
        }
        return rows;
    }
};

TEST_F(FrmWizardConditionTest, SaysBesideEachLiveDistanceWhetherItIsAPresentOne) {
    GoToFarEnd();
    ExpectConditions("no answer");
    EXPECT_EQ(Ui().Text("LabelWaiting"), QStringLiteral("Waiting for the sensor..."));
    form_->ShowState(ValueState::Live);
    ExpectConditions("measuring");
    EXPECT_EQ(Ui().Text("LabelWaiting"), QString());
    Poll(12000);
    Poll(12160);
    ExpectConditions("moving ±0.8\"");
    Poll(12160, false);
    ExpectConditions("no echo");
    EXPECT_EQ(Ui().Text("LabelWaiting"), QString());
    form_->ShowState(ValueState::Held);
    ExpectConditions("not read");
    form_->ShowState(ValueState::Stale);
    ExpectConditions("no answer");
    for (const char *name : {"CommandRecordDistance(0)", "cmdNav(2)", "cmdNav(3)"}) {
        EXPECT_TRUE(Ui().Enabled(name)) << name;
    }
    SetDistance(20000);
    Ui().Press("CommandRecordDistance(0)");
    EXPECT_EQ(Ui().Text("LabelRecordedDistance(0)"), QStringLiteral("200.00"));
}

TEST_F(FrmWizardConditionTest, TheWordsMoveNothingAndHaveRoomInALargeFontToo) {
    const QFont font = QApplication::font();
    QFont large = font;
    large.setPointSize(14);
    for (const QFont &used : {font, large}) {
        for (const bool core : {true, false}) {
            QApplication::setFont(used);
            core ? GoToCore() : GoToFarEnd();
            const auto places = [this] {
                std::vector<QRect> rects{form_->rect()};
                for (const QWidget *widget : form_->findChildren<QWidget *>()) {
                    rects.push_back(widget->geometry());
                }
                return rects;
            };
            form_->ShowState(ValueState::Live);
            Settle();
            const std::vector<QRect> before = places();
            Poll(0);
            Poll(65535); // the longest words
            const auto &label = Ui().Get<QLabel>(core ? "LabelCondition(2)" : "LabelCondition(0)");
            EXPECT_EQ(label.toolTip(), QString()) << label.width(); // not elided
            Settle();
            EXPECT_EQ(places(), before);
            form_->ShowState(ValueState::Stale);
            Settle();
            EXPECT_EQ(places(), before);
            EXPECT_EQ(Ui().Get<QLabel>("LabelWaiting").toolTip(), QString());
        }
    }
    QApplication::setFont(font);
}

TEST_F(FrmWizardConditionTest, ListsOnItsLastPageWhatFinishWillWrite) {
    FinishDistanceRoute("0");
    const std::array<QString, 3> save{QStringLiteral("Save Command (1)"), QString(),
                                      QStringLiteral("saves all")};
    const std::vector<std::array<QString, 3>> values{
        {QStringLiteral("Far Distance (29)"), QStringLiteral("360.00\""), QStringLiteral("200.00\"")},
        {QStringLiteral("Near Distance (28)"), QStringLiteral("12.00\""), QStringLiteral("30.00\"")},
        {QStringLiteral("Max Range (25)"), QStringLiteral("420.00\" (was 200.00\")"),
         QStringLiteral("205.00\"")},
        {QStringLiteral("Min Range (24)"), QStringLiteral("6.00\" (was 10.00\")"),
         QStringLiteral("25.00\"")}};
    auto all = values;
    all.push_back(save);
    EXPECT_EQ(Listed(), all);
    EXPECT_EQ(Ui().Text("LabelChanges"), QStringLiteral("Finish writes, in this order:"));
    Choose("chkSaveSettings");
    EXPECT_EQ(Listed(), values);
    zentrova_.ParamUpdate(29, 20000); // the sensor has them by now
    zentrova_.ParamUpdate(28, 3000);
    zentrova_.ForgetPendingWrites();
    zentrova_.ParamUpdate(25, 20500);
    zentrova_.ParamUpdate(24, 2500);
    form_->TakePoll();
    EXPECT_FALSE(Ui().Get<QWidget>("ListChanges").isVisible());
    EXPECT_EQ(Ui().Text("LabelChanges"),
              QStringLiteral("Nothing changes: the sensor has these values already."));
    Ui().Press("cmdNav(4)");
    EXPECT_TRUE(link_.writes.empty());
}

TEST_F(FrmWizardConditionTest, SaysOnItsLastPageThatAValueCanNotBeWritten) {
    FinishDistanceRoute("abc");
    EXPECT_TRUE(Ui().Text("LabelChanges").startsWith(QStringLiteral("These values can't be written: ")));
    EXPECT_FALSE(Ui().Get<QWidget>("ListChanges").isVisible());
}

TEST_F(FrmWizardConditionTest, KeepsItsListWhileItsWritesWait) {
    FinishDistanceRoute("0");
    link_.holds = true;
    const auto before = Listed();
    Ui().Press("cmdNav(4)");
    form_->TakePoll();
    EXPECT_EQ(Listed(), before);
    link_.EndWrites(zentrova_);
}

TEST_F(FrmWizardConditionTest, ReportsWhatItAsksForBeforeItWritesIt) {
    std::vector<ParameterValue> asked;
    FinishDistanceRoute("0");
    QObject::connect(&*form_, &frmWizard::Asked, [&](const std::vector<ParameterValue> &values) {
        EXPECT_TRUE(link_.writes.empty());
        asked = values;
    });
    Ui().Press("cmdNav(4)");
    EXPECT_EQ(asked,
              (std::vector<ParameterValue>{
                  {39, 1}, {29, 20000}, {28, 3000}, {25, 20500}, {24, 2500}, {37, 1000}, {36, 0}, {1, 1}}));
}

TEST_F(FrmWizardConditionTest, ReportsTheRangeThatCancelPutsBackAndSaysSoBefore) {
    std::vector<ParameterValue> asked;
    Open();
    QObject::connect(&*form_, &frmWizard::Asked,
                     [&](const std::vector<ParameterValue> &values) { asked = values; });
    const auto expectWords = [this](BoxAnswer answer, const char *words) {
        ExpectQuestion(answer);
        Ui().Press("cmdNav(1)");
        EXPECT_EQ(dialogs_.LastInformativeText(), QString::fromLatin1(words));
    };
    form_->ShowState(ValueState::Live);
    expectWords(BoxAnswer::No, "Nothing has been written.");
    Next();
    expectWords(BoxAnswer::No, "Nothing has been written. Min and Max Range go back.");
    EXPECT_TRUE(asked.empty());
    form_->ShowState(ValueState::Stale);
    expectWords(BoxAnswer::Yes,
                "Nothing has been written. Min and Max Range can't go back: the sensor doesn't answer.");
    EXPECT_EQ(asked, (std::vector<ParameterValue>{{24, 1000}, {25, 20000}}));
}

} // namespace ztv

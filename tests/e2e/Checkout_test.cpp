#include "model/ParamDefines.h"
#include "tabs/TabTable.h"
#include "tabs/ui/Indicator.h"
#include "tabs/ui/SwitchButton.h"
#include "tests/e2e/Session.h"
#include "tests/helpers/Printers.h"

#include <QRadioButton>
#include <QTabBar>
#include <QTest>

namespace ztv {

using ImageListCheckout::Key;

// Runs the Checkout tab against the sensor. Compares the writes in their order on the wire.
class CheckoutTest : public SessionTest {
protected:
    // Starts a sensor whose output already follows the distance, so that entering the tab writes nothing.
    void StartAtCheckout() {
        StartSensor();
        sensor_->HoldTarget(5000);
        Start(QStringLiteral("/checkout"));
        GoOnline();
        EXPECT_TRUE(WaitForPolls(1));
        ClickTab(Tab::Checkout);
        EXPECT_TRUE(Written({}));
    }

    void ClickTab(std::int16_t number) {
        QTabBar &bar = *Ui().Get<QTabWidget>("TabStrip1").tabBar();
        QTest::mouseClick(&bar, Qt::LeftButton, {}, bar.tabRect(number - 1).center());
        EXPECT_EQ(form_->CurrentTab(), number);
    }

    void ClickOption(const char *name) {
        auto &option = Ui().Get<QRadioButton>(name);
        QTest::mouseClick(&option, Qt::LeftButton, {}, QPoint(8, option.height() / 2));
        EXPECT_TRUE(option.isChecked()) << name;
    }

    bool IsSelected(const char *name) { return Ui().Get<QRadioButton>(name).isChecked(); }

    // Expects exactly these writes since the last call, and waits until a poll has read them back.
    testing::AssertionResult Written(const Writes &expected) {
        Settle();
        WaitUntil([&] { return sensor_->Writes().size() >= expected.size(); });
        EXPECT_TRUE(WaitForPolls(2));
        const Writes came = sensor_->Writes();
        sensor_->ClearRecords();
        return came == expected ? testing::AssertionSuccess()
                                : testing::AssertionFailure() << testing::PrintToString(came);
    }
};

TEST_F(CheckoutTest, LetsTheOutputFollowTheDistanceOnTheFirstEntryOnly) {
    StartSensor();
    sensor_->SetRegister(ParamDefines::AnalogOutputMode, ParamDefines::HyperbolicMode);
    Start(QStringLiteral("/checkout"));
    GoOnline();
    EXPECT_TRUE(WaitForPolls(1));
    EXPECT_TRUE(Written({{28, 34950}})); // the near distance of the roll
    ClickTab(Tab::Checkout);
    EXPECT_TRUE(Written({{39, 1}}));
    EXPECT_TRUE(IsSelected("OptionAnalogOut(5)"));

    ClickTab(Tab::Distance);
    Write(ParamDefines::AnalogOutputMode, ParamDefines::HyperbolicMode);
    EXPECT_TRUE(Written({{39, 2}}));
    ClickTab(Tab::Checkout);
    EXPECT_TRUE(Written({})); // still selected
    EXPECT_EQ(sensor_->Register(39), 2);
}

TEST_F(CheckoutTest, LeavesAForcedOutputUntilItIsEnteredAgain) {
    StartAtCheckout();
    ClickOption("OptionAnalogOut(1)");
    EXPECT_TRUE(Written({{39, 0}, {40, 1024}}));
    EXPECT_EQ(Ui().Text("TextCheckoutVoltageOut"), QStringLiteral("2.50V"));
    EXPECT_EQ(Ui().Text("TextParam(8)"), QStringLiteral("1024"));
    ClickTab(Tab::Basic);
    EXPECT_TRUE(Written({}));
    EXPECT_EQ(sensor_->Register(39), 0);
    ClickTab(Tab::Checkout);
    EXPECT_TRUE(Written({{39, 1}}));
}

TEST_F(CheckoutTest, WalksThroughTheVoltages) {
    StartAtCheckout();
    sensor_->SetRegister(ParamDefines::ManualOutput, 7);
    EXPECT_TRUE(WaitForPolls(2));
    const std::pair<Writes, const char *> steps[] = {{{{39, 0}, {40, 0}}, "0.00V"},
                                                     {{{40, 1024}}, "2.50V"},
                                                     {{{40, 2048}}, "5.00V"},
                                                     {{{40, 3072}}, "7.50V"},
                                                     {{{40, 4095}}, "10.00V"}};
    for (const auto &[writes, voltage] : steps) {
        Ui().Press("CommandNext");
        EXPECT_TRUE(Written(writes));
        EXPECT_EQ(Ui().Text("TextCheckoutVoltageOut"), QString::fromLatin1(voltage));
    }
    Ui().Press("CommandNext");
    EXPECT_TRUE(Written({{39, 1}}));
    EXPECT_TRUE(IsSelected("OptionAnalogOut(5)"));
    Ui().Press("CommandNext");
    EXPECT_TRUE(Written({{39, 0}, {40, 0}}));
    EXPECT_TRUE(IsSelected("OptionAnalogOut(0)"));
}

TEST_F(CheckoutTest, SetsTheEndsOfBothRanges) {
    StartAtCheckout();
    ClickOption("OptionRange(0)");
    EXPECT_TRUE(Written({{29, 6000}, {25, 6200}}));
    ClickOption("OptionRange(1)");
    EXPECT_TRUE(Written({{25, 42000}, {29, 42000}}));
    EXPECT_EQ(sensor_->Register(25), 42000);
    EXPECT_EQ(sensor_->Register(29), 42000);
}

TEST_F(CheckoutTest, ShowsTheEchoAndTheDistance) {
    StartAtCheckout();
    EXPECT_EQ(Ui().Text("LabelDist"), QStringLiteral("50.00\""));
    EXPECT_EQ(Ui().Get<Indicator>("ImageNoEcho").Picture(), Key::Green);
    ClickOption("OptionRange(0)");
    sensor_->HoldTarget(7000);
    EXPECT_TRUE(WaitUntil([this] { return Ui().Get<Indicator>("ImageNoEcho").Picture() == Key::Gray; }));
    ClickOption("OptionRange(1)");
    EXPECT_TRUE(WaitUntil([this] { return Ui().Get<Indicator>("ImageNoEcho").Picture() == Key::Green; }));
    EXPECT_EQ(Ui().Text("LabelDist"), QStringLiteral("70.00\""));
}

TEST_F(CheckoutTest, ShowsTheInputs) {
    StartAtCheckout();
    EXPECT_EQ(Ui().Get<Indicator>("ImageTeachInput").Picture(), Key::Gray);
    EXPECT_TRUE(IsSelected("OptionClockSel(0)"));
    for (const int number : {18, 19, 20}) {
        sensor_->SetRegister(number, 1);
    }
    sensor_->SetRegister(48, 123);
    EXPECT_TRUE(WaitForPolls(2));
    EXPECT_EQ(Ui().Get<Indicator>("ImageTeachInput").Picture(), Key::Red);
    EXPECT_EQ(Ui().Get<Indicator>("ImageExtClkInStatus").Picture(), Key::Red);
    EXPECT_TRUE(IsSelected("OptionClockSel(1)"));
    EXPECT_EQ(Ui().Text("TextCheckoutVoltageIn"), QStringLiteral("1.23V"));
    EXPECT_TRUE(Written({}));
}

TEST_F(CheckoutTest, ShowsARelayAsTheSensorReportsIt) {
    StartAtCheckout();
    auto &relay = Ui().Get<SwitchButton>("imgRelay(0)");
    sensor_->SetRegister(60, 0); // overrides the relay's command
    EXPECT_TRUE(WaitForPolls(2));
    Ui().Press("imgRelay(0)");
    EXPECT_TRUE(Written({{54, 1}}));
    EXPECT_EQ(relay.Picture(), Key::Off);
    sensor_->Release(60);
    EXPECT_TRUE(WaitUntil([&] { return relay.Picture() == Key::On; }));

    sensor_->SetRegister(61, 1);
    Ui().Press("imgRelay(1)");
    EXPECT_TRUE(Written({{55, 1}}));
    Ui().Press("imgRelay(1)");
    EXPECT_TRUE(Written({{55, 0}}));
    EXPECT_EQ(Ui().Get<SwitchButton>("imgRelay(1)").Picture(), Key::On);
}

TEST_F(CheckoutTest, PutsTheOutputToTenVoltsWithTheClock) {
    StartAtCheckout();
    Ui().Press("imgClkOut");
    EXPECT_TRUE(Written({{39, 0}, {40, 4095}, {23, 1}}));
    EXPECT_TRUE(IsSelected("OptionAnalogOut(4)"));
    EXPECT_EQ(Ui().Text("TextCheckoutVoltageOut"), QStringLiteral("10.00V"));
    EXPECT_EQ(Ui().Get<SwitchButton>("imgClkOut").Picture(), Key::On);
    Ui().Press("imgClkOut");
    EXPECT_TRUE(Written({{23, 0}}));
    EXPECT_EQ(Ui().Get<SwitchButton>("imgClkOut").Picture(), Key::Off);
}

TEST_F(CheckoutTest, ReinitialisesWithoutAQuestion) {
    StartAtCheckout();
    Write(ParamDefines::NearDistance, 2222);
    ClickOption("OptionRange(0)");
    ClickOption("OptionAnalogOut(3)");
    EXPECT_TRUE(Written({{28, 2222}, {29, 6000}, {25, 6200}, {39, 0}, {40, 3072}}));
    Ui().Press("CommandReInit");
    EXPECT_TRUE(Written({{39, 1}, {3, 1}}));
    EXPECT_FALSE(IsSelected("OptionRange(0)"));
    EXPECT_FALSE(IsSelected("OptionRange(1)"));
    EXPECT_EQ(Value(ParamDefines::NearDistance), form_->Zentrova().ParamPreset(ParamDefines::NearDistance));
    EXPECT_EQ(Value(ParamDefines::MaxRange), form_->Zentrova().ParamPreset(ParamDefines::MaxRange));
}

TEST_F(CheckoutTest, SendsWholeClicksInTheirOrderHoweverFastTheyCome) {
    StartAtCheckout();
    ClickOption("OptionAnalogOut(4)");
    Ui().Press("imgRelay(0)");
    ClickOption("OptionAnalogOut(2)");
    Ui().Press("imgRelay(0)");
    ClickOption("OptionRange(0)");
    EXPECT_TRUE(Written({{39, 0}, {40, 4095}, {54, 1}, {40, 2048}, {54, 0}, {29, 6000}, {25, 6200}}));
    EXPECT_EQ(sensor_->Register(40), 2048);
}

TEST_F(CheckoutTest, SaysSoWhenTheSensorDoesNotTakeAWrite) {
    StartAtCheckout();
    sensor_->Execute(QStringLiteral("mute on"));
    dialogs_.ExpectNotice(QStringLiteral("Error writing parameter"));
    Ui().Press("imgRelay(0)");
    EXPECT_TRUE(WaitUntil([this] { return dialogs_.AllCame(); }));
    sensor_->Execute(QStringLiteral("mute off"));
    EXPECT_TRUE(WaitUntil([this] { return Value(54) == 0; }));
}

TEST_F(CheckoutTest, WorksInTheTableWhileOffline) {
    Start(QStringLiteral("/checkout"));
    form_->Zentrova().ParamUpdate(ParamDefines::AnalogOutputMode, ParamDefines::HyperbolicMode);
    EXPECT_FALSE(form_->Zentrova().FileChangesNeedSaving());
    ClickTab(Tab::Checkout);
    EXPECT_EQ(Value(ParamDefines::AnalogOutputMode), ParamDefines::LinearMode);
    EXPECT_TRUE(form_->Zentrova().FileChangesNeedSaving());
    Ui().Press("imgClkOut");
    EXPECT_EQ(Value(ParamDefines::AnalogOutputMode), ParamDefines::ManualMode);
    EXPECT_EQ(Value(ParamDefines::ManualOutput), 4095);
    EXPECT_EQ(Ui().Get<SwitchButton>("imgClkOut").Picture(), Key::Off); // nothing refreshes the page
    ClickTab(Tab::Distance);
    EXPECT_NE(Ui().Text("TextParam(8)"), QStringLiteral("4095"));
    ClickTab(Tab::Checkout);
    EXPECT_EQ(Ui().Get<SwitchButton>("imgClkOut").Picture(), Key::On);
    EXPECT_EQ(Ui().Text("TextParam(8)"), QStringLiteral("4095"));
}

TEST_F(CheckoutTest, FollowsTheUserToAnotherTabAsItIsEntered) {
    StartAtCheckout();
    ClickOption("OptionAnalogOut(0)");
    EXPECT_TRUE(WaitForPolls(1));
    ClickTab(Tab::Distance);
    Write(ParamDefines::NearDistance, 2000); // still under way as the page is entered
    QMetaObject::invokeMethod(
        form_.get(), [this] { ClickTab(Tab::Wizard); }, Qt::QueuedConnection);
    QTabBar &bar = *Ui().Get<QTabWidget>("TabStrip1").tabBar();
    QTest::mouseClick(&bar, Qt::LeftButton, {}, bar.tabRect(Tab::Checkout - 1).center());
    EXPECT_TRUE(WaitUntil([this] { return form_->CurrentTab() == Tab::Wizard; }));
    EXPECT_TRUE(Ui().Get<QWidget>("TabFrame(3)").isVisible());
    EXPECT_FALSE(Ui().Get<QWidget>("TabFrame(5)").isVisible());
    EXPECT_EQ(Ui().Get<QTabWidget>("TabStrip1").currentIndex(), Tab::Wizard - 1);
    EXPECT_TRUE(WaitUntil([this] { return sensor_->Register(39) == 1; }));
}

} // namespace ztv

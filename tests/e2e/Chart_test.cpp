#include "model/ParamDefines.h"
#include "tests/e2e/Session.h"

namespace ztv {

// Tests the sensor's state on the Basic tab's chart, on a real line.
class ChartTest : public SessionTest {
protected:
    bool Shows(const char *name) const { return Ui().Get<QWidget>(name).isVisible(); }
    QString TipOf(const char *name) const { return Ui().Get<QWidget>(name).toolTip(); }

    // Waits for the condition and returns how many polls were completed before it held.
    template <typename Condition>
    int PollsUntil(const Condition &condition) {
        int polls = 0;
        const auto connection = QObject::connect(
            &form_->Link().Mbaxp1(), &Mbaxp::TransactionDone, form_.get(),
            [&polls](LinkTransaction transaction) { polls += transaction == LinkTransaction::Poll ? 1 : 0; });
        EXPECT_TRUE(WaitUntil(condition));
        QObject::disconnect(connection);
        return polls;
    }
};

TEST_F(ChartTest, SaysWithinAPollThatTheTargetIsGoneAndThatItIsBack) {
    StartSensor();
    sensor_->HoldTarget(12000);
    Start();
    EXPECT_FALSE(Shows("LabelNoEcho")) << "nothing was measured yet";
    GoOnline();
    EXPECT_TRUE(WaitUntil([this] { return Shows("FrameTarget"); }));
    EXPECT_FALSE(Shows("LabelNoEcho"));
    const int place = Ui().Get<QWidget>("FrameTarget").x();
    for (int round = 0; round < 2; ++round) {
        // The first poll may have been under way.
        sensor_->HoldTarget(45000);
        EXPECT_LE(PollsUntil([this] { return Shows("LabelNoEcho"); }), 2);
        EXPECT_FALSE(Shows("FrameTarget"));
        EXPECT_EQ(Ui().Get<QWidget>("LabelNoEcho").x(), place) << "the last distance stands";
        EXPECT_EQ(Ui().Text("LabelEcho"), QStringLiteral("Echo\n0 %"));
        sensor_->HoldTarget(12000);
        EXPECT_LE(PollsUntil([this] { return !Shows("LabelNoEcho"); }), 2);
        EXPECT_TRUE(Shows("FrameTarget"));
        EXPECT_NE(Ui().Text("LabelEcho"), QStringLiteral("Echo\n0 %"));
    }
}

TEST_F(ChartTest, SaysNothingOfTheEchoWhileTheSensorIsSilent) {
    StartPolling();
    sensor_->HoldTarget(45000);
    EXPECT_TRUE(WaitUntil([this] { return Shows("LabelNoEcho"); }));
    sensor_->Execute(QStringLiteral("mute on"));
    EXPECT_TRUE(WaitUntil([this] { return !Shows("LabelNoEcho"); }));
    EXPECT_FALSE(Shows("FrameTarget"));
    EXPECT_EQ(TipOf("LampRelay(0)"), QStringLiteral("Relay 1: no present value"));
    sensor_->Execute(QStringLiteral("mute off"));
    EXPECT_TRUE(WaitUntil([this] { return Shows("LabelNoEcho"); }));
    Ui().Choose("Toolbar1(Offline)");
    EXPECT_TRUE(WaitUntil([this] { return !Shows("LabelNoEcho"); }));
}

TEST_F(ChartTest, ALampFollowsEachRelayOfTheSensor) {
    StartSensor();
    sensor_->HoldTarget(3000);
    Start();
    GoOnline();
    EXPECT_TRUE(WaitForPolls(1));
    const auto tells = [this](const char *first, const char *second) {
        return WaitUntil([&] {
            return TipOf("LampRelay(0)") == QString::fromLatin1(first) &&
                   TipOf("LampRelay(1)") == QString::fromLatin1(second);
        });
    };
    const bool firstIsOn = sensor_->Register(ParamDefines::Relay1State) != 0;
    const bool secondIsOn = sensor_->Register(ParamDefines::Relay2State) != 0;
    EXPECT_TRUE(tells(firstIsOn ? "Relay 1 is on" : "Relay 1 is off",
                      secondIsOn ? "Relay 2 is on" : "Relay 2 is off"));
    sensor_->SetRegister(ParamDefines::Relay1Output, 1);
    sensor_->SetRegister(ParamDefines::Relay2Output, 1);
    EXPECT_TRUE(tells("Relay 1 is on", "Relay 2 is on"));
}

TEST_F(ChartTest, TellsTheDiameterOfTheRollAndTheThresholdThatSomebodyPutsOutOfTheRange) {
    StartPolling();
    EXPECT_FALSE(Shows("LabelDiameter"));
    sensor_->SetRegister(ParamDefines::AnalogOutputMode, ParamDefines::HyperbolicMode);
    EXPECT_TRUE(WaitUntil([this] { return Shows("LabelDiameter"); }));
    EXPECT_TRUE(Ui().Text("LabelDiameter").startsWith(QStringLiteral("Diameter ")));
    EXPECT_FALSE(Shows("MarkRelay(1)"));
    sensor_->SetRegister(ParamDefines::MaxRange, 41000);
    sensor_->SetRegister(ParamDefines::Relay2OnThreshold, 41001);
    EXPECT_TRUE(WaitUntil([this] { return Shows("MarkRelay(1)"); }));
    EXPECT_EQ(TipOf("MarkRelay(1)"),
              QStringLiteral("Relay 2 can't switch here: 410.01\" is beyond Max Range 410.00\"."));
    sensor_->SetRegister(ParamDefines::Relay2OnThreshold, 30000);
    EXPECT_TRUE(WaitUntil([this] { return !Shows("MarkRelay(1)"); }));
}

} // namespace ztv

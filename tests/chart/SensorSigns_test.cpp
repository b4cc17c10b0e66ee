#include "chart/SensorSigns.h"

#include "chart/BasicGraph.h"
#include "chart/BasicLayout.h"
#include "model/ParamDefines.h"
#include "tests/helpers/Printers.h"
#include "tests/helpers/TestPresets.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace ztv {

using namespace Drawing;

class SensorSignsTest : public testing::Test {
protected:
    void Set(std::int16_t tag, std::int32_t value) { zentrova_.ParamUpdate(tag, value); }
    void Show(bool live = true) {
        drawing_.MeasuredIsLive(live);
        graph_.FollowTable();
        graph_.UpdateGraph();
        SensorSigns::Follow(zentrova_, drawing_);
    }
    const Control &The(ControlId id, int index = 0) const { return drawing_.At(id, index); }

    ClassZentrova zentrova_{ShippedPresetsFolder()};
    BasicDrawing drawing_;
    BasicGraph graph_{zentrova_, drawing_};
};

TEST_F(SensorSignsTest, FillsTheLampOfEachRelayThatIsOn) {
    for (const int states : {0, 1, 2, 3}) {
        SCOPED_TRACE(states);
        for (const int relay : {0, 1}) {
            Set(static_cast<std::int16_t>(ParamDefines::Relay1State + relay), (states >> relay) & 1);
        }
        Show();
        for (const int relay : {0, 1}) {
            const bool on = ((states >> relay) & 1) != 0;
            const Control &lamp = The(ControlId::LampRelay, relay);
            EXPECT_EQ(lamp.lit, on);
            EXPECT_EQ(lamp.toolTip, QStringLiteral("Relay %1 is %2")
                                        .arg(QString::number(relay + 1),
                                             on ? QStringLiteral("on") : QStringLiteral("off")));
        }
    }
}

TEST_F(SensorSignsTest, OnlyTheStateOneIsOn) {
    for (const int state : {2, 7, -1, 32767}) {
        Set(ParamDefines::Relay1State, state);
        Show();
        EXPECT_FALSE(The(ControlId::LampRelay, 0).lit) << state;
        EXPECT_EQ(The(ControlId::LampRelay, 0).toolTip, QStringLiteral("Relay 1 is off"));
    }
}

TEST_F(SensorSignsTest, TheRelaysOutputSettingsLightNoLamp) {
    Set(ParamDefines::Relay1Output, 1);
    Set(ParamDefines::Relay2Output, 1);
    Show();
    EXPECT_FALSE(The(ControlId::LampRelay, 0).lit);
    EXPECT_FALSE(The(ControlId::LampRelay, 1).lit);
}

TEST_F(SensorSignsTest, ALampHasItsRelaysNumberAndColour) {
    for (const int relay : {0, 1}) {
        const Control &lamp = The(ControlId::LampRelay, relay);
        EXPECT_EQ(lamp.figure, Figure::Lamp);
        EXPECT_EQ(lamp.caption, QString::number(relay + 1));
        EXPECT_EQ(lamp.colour, drawing_.At(LineId::LineRelay, relay).colour);
        EXPECT_EQ(drawing_.ColourOf(lamp), lamp.colour);
    }
}

TEST_F(SensorSignsTest, DimsEachReadingThatIsNotAPresentOne) {
    Set(ParamDefines::Relay2State, 1);
    Set(ParamDefines::EchoStrength, 64);
    Show(false);
    for (const ControlId id : {ControlId::LampRelay, Member(ControlId::LampRelay, 1), ControlId::LabelEcho,
                               ControlId::LabelDiameter}) {
        EXPECT_EQ(drawing_.ColourOf(drawing_.At(id)), Colour::Dimmed) << static_cast<int>(id);
    }
    EXPECT_EQ(drawing_.ColourOf(The(ControlId::LabelRelays)), Colour::Text);
    EXPECT_EQ(The(ControlId::LampRelay, 0).toolTip, QStringLiteral("Relay 1: no present value"));
    EXPECT_EQ(The(ControlId::LampRelay, 1).toolTip, QStringLiteral("Relay 2: no present value"));
    EXPECT_TRUE(The(ControlId::LampRelay, 1).lit) << "the last values stand";
    EXPECT_EQ(The(ControlId::LabelEcho).caption, QStringLiteral("Echo\n64 %"));
    Show(true);
    EXPECT_EQ(drawing_.ColourOf(The(ControlId::LabelEcho)), Colour::Text);
    EXPECT_EQ(The(ControlId::LampRelay, 1).toolTip, QStringLiteral("Relay 2 is on"));
}

TEST_F(SensorSignsTest, TellsTheStrengthOfTheEcho) {
    for (const auto &[strength, text] :
         {std::pair{0, "Echo\n0 %"}, {64, "Echo\n64 %"}, {100, "Echo\n100 %"}}) {
        Set(ParamDefines::EchoStrength, strength);
        Show();
        EXPECT_EQ(The(ControlId::LabelEcho).caption, QString::fromLatin1(text));
        EXPECT_TRUE(The(ControlId::LabelEcho).visible);
    }
}

TEST_F(SensorSignsTest, TellsTheDiameterInTheDiametersModeAlone) {
    Set(ParamDefines::ActualDiameter, 1234);
    for (const int mode : {0, 1, 2, 3, 2, 1}) {
        Set(ParamDefines::AnalogOutputMode, mode);
        Show();
        EXPECT_EQ(The(ControlId::LabelDiameter).visible, mode == ParamDefines::HyperbolicMode) << mode;
        EXPECT_EQ(The(ControlId::LabelDiameter).caption, QStringLiteral("Diameter 12.34\""));
    }
}

// The line of the distance stays free, so do the voltage and the captions around the chart.
TEST_F(SensorSignsTest, TheDiameterStaysBesideTheLineOfTheDistanceAndClearOfItsNeighbours) {
    Set(ParamDefines::AnalogOutputMode, ParamDefines::HyperbolicMode);
    const Control &diameter = The(ControlId::LabelDiameter);
    const Control &distance = The(ControlId::FrameActualDist);
    const Control &box = The(ControlId::TextParam, 6);
    for (int value = 0; value <= 45000; value += 100) {
        Set(ParamDefines::ActualDistance, value);
        Show();
        const float line = distance.left + drawing_.At(LineId::LineDistExt, 1).x1;
        const float right = diameter.left + diameter.width;
        EXPECT_NEAR(std::max(diameter.left - line, line - right), 60, 0.01) << value;
        EXPECT_GE(diameter.left, 0) << value;
        EXPECT_LE(right, The(ControlId::FrameOutputVoltage).left + The(ControlId::LabelParam, 7).left);
    }
    EXPECT_GE(diameter.top, distance.top + box.top + box.height - 1);
    EXPECT_LE(diameter.top + diameter.height, The(ControlId::FrameGraph).top);
}

TEST_F(SensorSignsTest, SaysThatThereIsNoEchoWhereTheTargetWouldBe) {
    const Control &noEcho = The(ControlId::LabelNoEcho);
    EXPECT_EQ(noEcho.caption, QStringLiteral("NO ECHO"));
    EXPECT_EQ(noEcho.colour, Colour::Amber);
    EXPECT_EQ(noEcho.parent, The(ControlId::FrameTarget).parent);
    EXPECT_FALSE(noEcho.visible) << "before anything is shown";
    Set(ParamDefines::ActualDistance, 12000);
    for (const bool echo : {false, true, false}) {
        Set(ParamDefines::EchoReceived, echo ? 1 : 0);
        Show();
        EXPECT_EQ(noEcho.visible, !echo);
        EXPECT_EQ(The(ControlId::FrameTarget).visible, echo);
    }
    for (const int distance : {0, 600, 12000, 36000, 42000, 65535}) {
        Set(ParamDefines::ActualDistance, distance);
        Show();
        const float target = The(ControlId::FrameTarget).left;
        EXPECT_EQ(noEcho.left, std::min(target, BasicLayout::VisibleRight - noEcho.width)) << distance;
    }
}

TEST_F(SensorSignsTest, AnEchoThatIsNotAPresentOneIsNotMissing) {
    Set(ParamDefines::EchoReceived, 0);
    Show(false);
    EXPECT_FALSE(The(ControlId::LabelNoEcho).visible);
    EXPECT_FALSE(The(ControlId::FrameTarget).visible);
    Show(true);
    EXPECT_TRUE(The(ControlId::LabelNoEcho).visible);
    Show(false); // the cable is pulled
    EXPECT_FALSE(The(ControlId::LabelNoEcho).visible);
}

struct Box {
    float left, top, right, bottom; // in the page
};

class SignsRoomTest : public SensorSignsTest {
protected:
    Box BoxOf(const Control &control) const {
        Box box{control.left, control.top, control.left + control.width, control.top + control.height};
        for (std::optional<ControlId> parent = control.parent; parent; parent = drawing_.At(*parent).parent) {
            const Control &frame = drawing_.At(*parent);
            box = {box.left + frame.left, box.top + frame.top, box.right + frame.left,
                   box.bottom + frame.top};
        }
        return box;
    }
    static bool Meet(const Box &one, const Box &other) {
        return one.left < other.right && other.left < one.right && one.top < other.bottom &&
               other.top < one.bottom;
    }
};

TEST_F(SignsRoomTest, TheNewReadingsTakeRoomThatTheGivenLayoutLeavesFree) {
    const ControlId readings[] = {ControlId::LabelRelays, ControlId::LampRelay,
                                  Member(ControlId::LampRelay, 1), ControlId::LabelEcho};
    std::vector<ControlId> given = {
        ControlId::FrameGraph,         ControlId::Label2,         ControlId::Label3,
        ControlId::FrameTransducer,    ControlId::FrameZentrova,  ControlId::FrameManOutput,
        ControlId::FrameOutputVoltage, ControlId::FrameActualDist};
    for (int index = 0; index < 6; ++index) {
        given.push_back(Member(ControlId::TextParam, index));
        given.push_back(Member(ControlId::LabelParam, index));
    }
    for (const int distance : {0, 600, 1200, 20000, 36000, 42000}) {
        for (const int voltage : {0, 500, 1000}) {
            Set(ParamDefines::ActualDistance, distance);
            Set(ParamDefines::OutputVoltage, voltage);
            Show();
            for (const ControlId reading : readings) {
                const Box box = BoxOf(drawing_.At(reading));
                EXPECT_GE(box.left, 0);
                EXPECT_GE(box.top, 0);
                EXPECT_LE(box.right, BasicLayout::VisibleRight);
                for (const ControlId other : given) {
                    EXPECT_FALSE(Meet(box, BoxOf(drawing_.At(other))))
                        << static_cast<int>(reading) << " and " << static_cast<int>(other);
                }
            }
        }
    }
}

} // namespace ztv

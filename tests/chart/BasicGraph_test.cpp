#include "chart/BasicGraph.h"

#include "chart/DrawingChanges.h"
#include "model/ParamDefines.h"
#include "model/RollGeometry.h"
#include "support/Fault.h"
#include "tests/helpers/FakeLink.h"
#include "tests/helpers/TestPresets.h"

#include <functional>
#include <gtest/gtest.h>

namespace ztv {

using namespace Drawing;

class BasicGraphTest : public testing::Test {
protected:
    BasicGraphTest() {
        Set(ParamDefines::MinRange, 600);
        Set(ParamDefines::NearDistance, 1600);
        Set(ParamDefines::FarDistance, 2600);
        Set(ParamDefines::MaxRange, 4600);
        Set(ParamDefines::CoreDiameter, 300);
        Set(ParamDefines::MaxDiameter, 2300);
        Set(ParamDefines::EchoReceived, 1);
    }

    void Set(std::int16_t tag, std::int32_t value) { zentrova_.ParamUpdate(tag, value); }

    void Voltages(std::int32_t nearVoltage, std::int32_t farVoltage) {
        Set(ParamDefines::NearVoltage, nearVoltage);
        Set(ParamDefines::FarVoltage, farVoltage);
    }

    void Configure(std::int32_t mode) {
        Set(ParamDefines::AnalogOutputMode, mode);
        graph_.ConfigureBasicTab();
    }

    const Line &TheLine(LineId id, int index = 0) const { return drawing_.At(id, index); }
    const Control &TheControl(ControlId id, int index = 0) const { return drawing_.At(id, index); }

    ClassZentrova zentrova_{ShippedPresetsFolder()};
    BasicDrawing drawing_;
    BasicGraph graph_{zentrova_, drawing_};
};

struct ModeCase {
    std::int32_t mode;
    bool farVoltage, nearVoltage, manOutput, line0V, line10V, slope;
    std::size_t curve; // LineHyperbolic with its template
    bool nearDistance;
};

const ModeCase modes[] = {
    {0, false, false, true, false, false, false, 1, true},
    {1, true, true, false, true, true, true, 1, true},
    {2, true, false, false, false, true, false, 100, false},
    {3, false, false, false, false, false, false, 1, true},
    {65535, false, false, false, false, false, false, 1, true},
    {-1, false, false, false, false, false, false, 1, true},
};

TEST_F(BasicGraphTest, ShowsWhatBelongsToTheMode) {
    for (const ModeCase &from : modes) {
        for (const ModeCase &to : modes) {
            SCOPED_TRACE(testing::Message() << from.mode << " to " << to.mode);
            Configure(from.mode);
            Configure(to.mode);
            EXPECT_EQ(TheControl(ControlId::LabelParam, 0).visible, to.farVoltage);
            EXPECT_EQ(TheControl(ControlId::TextParam, 0).visible, to.farVoltage);
            EXPECT_EQ(TheControl(ControlId::LabelParam, 1).visible, to.nearVoltage);
            EXPECT_EQ(TheControl(ControlId::TextParam, 1).visible, to.nearVoltage);
            EXPECT_EQ(TheControl(ControlId::FrameManOutput).visible, to.manOutput);
            EXPECT_EQ(TheLine(LineId::Line0V).visible, to.line0V);
            EXPECT_EQ(TheLine(LineId::Line10V).visible, to.line10V);
            EXPECT_EQ(TheLine(LineId::LineLinearSlope).visible, to.slope);
            EXPECT_EQ(drawing_.LineHyperbolic().size(), to.curve);
            EXPECT_EQ(TheControl(ControlId::TextParam, 3).enabled, to.nearDistance);
        }
    }
}

TEST_F(BasicGraphTest, LeavesTheRestOfTheChartInEveryMode) {
    for (const ModeCase &mode : modes) {
        Configure(mode.mode);
        for (const LineId line : {LineId::LineNearDistExt, LineId::LineFarDistExt, LineId::LineMinRange,
                                  LineId::LineMaxRange, LineId::LineDistExt, LineId::LineVoltExt}) {
            EXPECT_TRUE(TheLine(line).visible);
        }
        for (int index = 2; index < 9; ++index) {
            EXPECT_TRUE(TheControl(ControlId::TextParam, index).visible);
            EXPECT_TRUE(TheControl(ControlId::LabelParam, index).visible);
            EXPECT_EQ(TheControl(ControlId::TextParam, index).enabled,
                      index != 6 && index != 7 && (index != 3 || mode.mode != 2));
        }
    }
}

TEST_F(BasicGraphTest, DrawsTheCurveFromTheRailsOfTheCore) {
    Configure(2);
    const auto &curve = drawing_.LineHyperbolic();
    ASSERT_EQ(curve.size(), 100U);
    EXPECT_EQ(curve[1].x1, 4920);
    EXPECT_EQ(curve[1].y1, 240);
    EXPECT_EQ(curve[1].x2, 4890);
    // 0.5 of the diameter more than the core at point 50: 240 + 1920 x (1 - 3 / 13)
    EXPECT_EQ(curve[50].x2, 3420);
    EXPECT_FLOAT_EQ(curve[50].y2, 1716.92308F);
    EXPECT_EQ(curve[51].x1, 3420);
    EXPECT_EQ(curve[51].y1, curve[50].y2);
    EXPECT_EQ(curve[99].x1, 1980);
    EXPECT_EQ(curve[99].x2, 0);
    EXPECT_EQ(curve[99].y1, curve[99].y2);
    for (std::size_t i = 1; i < curve.size(); ++i) {
        EXPECT_TRUE(curve[i].visible);
    }
    EXPECT_FALSE(curve[0].visible);
}

TEST_F(BasicGraphTest, HasNinetyNineSegmentsHoweverOftenItIsConfigured) {
    for (int times = 0; times < 3; ++times) {
        Configure(2);
        EXPECT_EQ(drawing_.LineHyperbolic().size(), 1U + 99U);
    }
}

TEST_F(BasicGraphTest, DrawsTheCurveFromTheFlippedRails) {
    Voltages(1000, 0);
    Configure(1);
    graph_.UpdateGraph();
    Configure(2);
    const auto &curve = drawing_.LineHyperbolic();
    EXPECT_EQ(curve[1].y1, 2160);
    EXPECT_FLOAT_EQ(curve[50].y2, 683.076923F); // 2160 - 1920 x 10 / 13
}

TEST_F(BasicGraphTest, DrawsTheCurveWhenConfiguredAndNotOnATick) {
    Configure(2);
    const Line before = drawing_.LineHyperbolic()[50];
    Set(ParamDefines::CoreDiameter, 600);
    graph_.UpdateGraph();
    EXPECT_EQ(drawing_.LineHyperbolic()[50], before);
    Configure(2);
    EXPECT_NE(drawing_.LineHyperbolic()[50], before);
}

TEST_F(BasicGraphTest, WritesTheNearDistanceOfTheFullRoll) {
    EXPECT_FALSE(zentrova_.FileChangesNeedSaving());
    Set(ParamDefines::CoreDiameter, 301);
    Configure(2); // 2600 - 1999 / 2
    EXPECT_EQ(zentrova_.ParamValue(ParamDefines::NearDistance), 1600);
    EXPECT_FALSE(zentrova_.FileChangesNeedSaving()); // the value that was there
    Set(ParamDefines::FarDistance, 2603);
    Configure(2);
    EXPECT_EQ(zentrova_.ParamValue(ParamDefines::NearDistance), 1604); // 1603.5
    EXPECT_TRUE(zentrova_.FileChangesNeedSaving());
}

TEST_F(BasicGraphTest, LeavesTheNearDistanceAloneInOtherModes) {
    Set(ParamDefines::NearDistance, 1234);
    for (const std::int32_t mode : {0, 1, 3}) {
        Configure(mode);
        EXPECT_EQ(zentrova_.ParamValue(ParamDefines::NearDistance), 1234);
    }
}

TEST_F(BasicGraphTest, FaultsOnARollWithoutADiameterAndLeavesNoCurve) {
    Configure(2);
    const float marker = TheControl(ControlId::PicRelay, 0).left;
    Set(ParamDefines::CoreDiameter, 0);
    Set(ParamDefines::MaxDiameter, 0);
    Set(ParamDefines::Relay1OnThreshold, 1600);
    try {
        graph_.ConfigureBasicTab();
        ADD_FAILURE() << "no fault";
    } catch (const Fault &fault) {
        EXPECT_EQ(fault.Cause(), Fault::Kind::DivisionByZero);
        EXPECT_FALSE(fault.Description().isEmpty());
    }
    EXPECT_EQ(drawing_.LineHyperbolic().size(), 1U);
    EXPECT_EQ(zentrova_.ParamValue(ParamDefines::NearDistance), 2600);
    EXPECT_FALSE(TheControl(ControlId::TextParam, 3).enabled);
    EXPECT_EQ(TheControl(ControlId::PicRelay, 0).left, marker);
}

class BasicGraphOnline : public BasicGraphTest {
protected:
    BasicGraphOnline() { zentrova_.ConnectTo(&link_); }

    FakeLink link_;
};

TEST_F(BasicGraphOnline, SendsTheNearDistanceToTheSensor) {
    Set(ParamDefines::NearDistance, 700);
    Configure(2);
    EXPECT_EQ(link_.writes, (std::vector<std::pair<int, int>>{{28, 1600}}));
}

TEST_F(BasicGraphOnline, DrawsOneCurveThoughConfiguredAgainWhileTheWriteWaits) {
    Set(ParamDefines::NearDistance, 700);
    link_.busy = true;
    Configure(2);
    Configure(2);
    EXPECT_EQ(drawing_.LineHyperbolic().size(), 100U);
    EXPECT_FALSE(TheControl(ControlId::TextParam, 3).enabled);
    link_.EndWrites(zentrova_);
    EXPECT_EQ(link_.writes, (std::vector<std::pair<int, int>>{{28, 1600}}));
}

struct PlaceCase {
    std::int32_t distance;
    float marker; // PicRelay.Left
    float cursor; // LineDistExt(0).X1
};

// Ranges 600, 1600, 2600, 4600 at 0, 1920, 4920 and the chart's end.
const PlaceCase places[] = {
    {0, 0, 0},
    {599, 0, 0},
    {600, 0, 0},
    {601, 1.92F, 1.92F},
    {1100, 960, 960},
    {1600, 1920, 1920},
    {1601, 1923, 1923},
    {2100, 3420, 3420},
    {2599, 4917, 4917},
    {2600, 4920, 4920},
    {2601, 4920.96F, 4920.9675F},
    {3600, 5880, 5887.5F},
    {4100, 6360, 6371.25F},
    {4600, 6840, 6855},
    {4601, 6840, 6855},
    {65535, 6840, 6855},
};

TEST_F(BasicGraphTest, StandsEachMarkerAtItsThreshold) {
    const std::int16_t thresholds[] = {56, 57, 58, 59};
    for (const PlaceCase &place : places) {
        for (int index = 0; index < 4; ++index) {
            SCOPED_TRACE(testing::Message() << "PicRelay(" << index << ") at " << place.distance);
            for (const std::int16_t tag : thresholds) {
                Set(tag, 1100);
            }
            Set(thresholds[index], place.distance);
            graph_.PositionRelayMarkers();
            for (int other = 0; other < 4; ++other) {
                EXPECT_EQ(TheControl(ControlId::PicRelay, other).left, other == index ? place.marker : 960);
            }
        }
    }
}

TEST_F(BasicGraphTest, StandsTheMarkersInEveryMode) {
    for (const ModeCase &mode : modes) {
        Set(ParamDefines::Relay2OffThreshold, 2100);
        Configure(mode.mode);
        EXPECT_EQ(TheControl(ControlId::PicRelay, 3).left, 3420) << mode.mode;
        Set(ParamDefines::Relay2OffThreshold, 3600);
        Configure(mode.mode);
        EXPECT_EQ(TheControl(ControlId::PicRelay, 3).left, 5880) << mode.mode;
    }
}

TEST_F(BasicGraphTest, MovesTheMarkersByTheNearDistanceThatItWrote) {
    Set(ParamDefines::NearDistance, 700);
    Set(ParamDefines::Relay1OnThreshold, 1600);
    Configure(2);
    EXPECT_EQ(TheControl(ControlId::PicRelay, 0).left, 1920);
}

TEST_F(BasicGraphTest, MovesAllThatStandsAtTheDistance) {
    for (const PlaceCase &place : places) {
        SCOPED_TRACE(place.distance);
        Set(ParamDefines::ActualDistance, place.distance);
        graph_.UpdateGraph();
        const Line &cursor = TheLine(LineId::LineDistExt);
        EXPECT_EQ(cursor.x1, place.cursor);
        EXPECT_EQ(cursor.x2, place.cursor);
        EXPECT_EQ(cursor.y1, 0);
        EXPECT_EQ(cursor.y2, 2295);
        EXPECT_EQ(TheControl(ControlId::FrameActualDist).left, 1560 + place.cursor - 607.5F + 7);
        EXPECT_EQ(TheControl(ControlId::FrameTarget).left, 1560 + place.cursor);
        EXPECT_EQ(TheControl(ControlId::FrameZentrova).width, 1560 + place.cursor - 600);
    }
}

TEST_F(BasicGraphTest, MovesTheCursorInEveryMode) {
    for (const ModeCase &mode : modes) {
        Configure(mode.mode);
        Set(ParamDefines::ActualDistance, mode.farVoltage ? 1100 : 3600);
        graph_.UpdateGraph();
        EXPECT_EQ(TheLine(LineId::LineDistExt).x1, mode.farVoltage ? 960 : 5887.5F);
    }
}

TEST_F(BasicGraphTest, MovesNothingElseOfTheChartByADistance) {
    const BasicDrawing before = drawing_;
    Set(ParamDefines::MinRange, 700);
    Set(ParamDefines::NearDistance, 1000);
    Set(ParamDefines::FarDistance, 2000);
    Set(ParamDefines::MaxRange, 3000);
    Configure(1);
    graph_.UpdateGraph();
    for (const LineId line :
         {LineId::Line0V, LineId::Line10V, LineId::LineLinearSlope, LineId::LineNearDistExt,
          LineId::LineFarDistExt, LineId::LineMinRange, LineId::LineMaxRange}) {
        EXPECT_EQ(TheLine(line), before.At(line));
    }
}

struct RailCase {
    std::int32_t nearVoltage, farVoltage;
    float nearRail, farRail, farLabel, nearLabel, farBox, nearBox;
};

TEST_F(BasicGraphTest, TurnsTheRailsSoThatTheLargerVoltageIsOnTop) {
    const RailCase cases[] = {
        {0, 1000, 2160, 240, 960, 2880, 1200, 3120},  {1000, 0, 240, 2160, 2880, 960, 3120, 1200},
        {500, 500, 2160, 240, 960, 2880, 1200, 3120}, {501, 500, 240, 2160, 2880, 960, 3120, 1200},
        {500, 501, 2160, 240, 960, 2880, 1200, 3120},
    };
    Configure(1);
    for (const RailCase &rails : cases) {
        SCOPED_TRACE(testing::Message() << rails.nearVoltage << " to " << rails.farVoltage);
        Voltages(rails.nearVoltage, rails.farVoltage);
        graph_.UpdateGraph();
        EXPECT_EQ(TheLine(LineId::Line0V).y1, rails.nearRail);
        EXPECT_EQ(TheLine(LineId::Line0V).y2, rails.nearRail);
        EXPECT_EQ(TheLine(LineId::Line10V).y1, rails.farRail);
        EXPECT_EQ(TheLine(LineId::Line10V).y2, rails.farRail);
        EXPECT_EQ(TheLine(LineId::LineLinearSlope).y1, rails.nearRail);
        EXPECT_EQ(TheLine(LineId::LineLinearSlope).y2, rails.farRail);
        EXPECT_EQ(TheControl(ControlId::LabelParam, 0).top, rails.farLabel);
        EXPECT_EQ(TheControl(ControlId::LabelParam, 1).top, rails.nearLabel);
        EXPECT_EQ(TheControl(ControlId::TextParam, 0).top, rails.farBox);
        EXPECT_EQ(TheControl(ControlId::TextParam, 1).top, rails.nearBox);
        EXPECT_EQ(TheLine(LineId::LineLinearSlope).x1, 1920); // no rail moves sideways
        EXPECT_EQ(TheLine(LineId::LineLinearSlope).x2, 4920);
    }
}

TEST_F(BasicGraphTest, KeepsTheRailsOfTheLastLinearTickInOtherModes) {
    for (const std::int32_t mode : {0, 2, 3}) {
        for (const bool flipped : {false, true}) {
            SCOPED_TRACE(testing::Message() << mode << (flipped ? " flipped" : ""));
            Voltages(flipped ? 1000 : 0, flipped ? 0 : 1000);
            Configure(1);
            graph_.UpdateGraph();
            Configure(mode);
            Voltages(flipped ? 0 : 1000, flipped ? 1000 : 0);
            graph_.UpdateGraph();
            EXPECT_EQ(TheLine(LineId::Line10V).y1, flipped ? 2160 : 240);
            EXPECT_EQ(TheLine(LineId::LineLinearSlope).y1, flipped ? 240 : 2160);
            EXPECT_EQ(TheControl(ControlId::TextParam, 0).top, flipped ? 3120 : 1200);
        }
    }
}

TEST_F(BasicGraphTest, TurnsTheRailsOnATickOnly) {
    Voltages(1000, 0);
    Configure(1);
    EXPECT_EQ(TheLine(LineId::Line10V).y1, 240);
}

struct VoltageCase {
    std::int32_t mode, nearVoltage, farVoltage, voltage;
    float height;
};

TEST_F(BasicGraphTest, MovesAllThatStandsAtTheVoltage) {
    const VoltageCase cases[] = {
        {1, 0, 1000, 0, 2160},
        {1, 0, 1000, 250, 1680},
        {1, 0, 1000, 310, 1564.8F},
        {1, 0, 1000, 1000, 240},
        {1, 0, 1000, 1001, 240},
        {1, 0, 1000, -1, 2160},
        {1, 200, 800, 200, 2160},
        {1, 200, 800, 199, 2160},
        {1, 200, 800, 201, 2156.8F},
        {1, 200, 800, 500, 1200},
        {1, 200, 800, 799, 243.2F},
        {1, 200, 800, 800, 240},
        // flipped: the larger voltage is still on top
        {1, 1000, 0, 0, 2160},
        {1, 1000, 0, 250, 1680},
        {1, 1000, 0, 1000, 240},
        {1, 800, 200, 199, 2160},
        {1, 800, 200, 350, 1680},
        {1, 800, 200, 801, 240},
    };
    for (const VoltageCase &expected : cases) {
        SCOPED_TRACE(testing::Message()
                     << expected.nearVoltage << " to " << expected.farVoltage << " at " << expected.voltage);
        Set(ParamDefines::AnalogOutputMode, expected.mode);
        Voltages(expected.nearVoltage, expected.farVoltage);
        Set(ParamDefines::OutputVoltage, expected.voltage);
        graph_.UpdateGraph();
        const Line &cursor = TheLine(LineId::LineVoltExt);
        EXPECT_EQ(cursor.x1, 0);
        EXPECT_EQ(cursor.y1, expected.height);
        EXPECT_EQ(cursor.x2, 6855);
        EXPECT_EQ(cursor.y2, expected.height);
        const float top = 1080.0F + expected.height - 480.0F;
        EXPECT_EQ(TheControl(ControlId::FrameOutputVoltage).top, top);
        EXPECT_EQ(TheControl(ControlId::FrameManOutput).top, top);
    }
}

TEST_F(BasicGraphTest, ReadsTheHeightsOfTheHiddenSlopeInOtherModes) {
    for (const std::int32_t mode : {0, 2, 3}) {
        SCOPED_TRACE(mode);
        Voltages(0, 1000);
        Configure(1);
        graph_.UpdateGraph();
        Configure(mode);
        Set(ParamDefines::OutputVoltage, 250);
        graph_.UpdateGraph();
        EXPECT_EQ(TheLine(LineId::LineVoltExt).y1, 1680);
        Voltages(1000, 0); // the rails stay, so the scale is upside down
        graph_.UpdateGraph();
        EXPECT_EQ(TheLine(LineId::LineVoltExt).y1, 720);
    }
}

TEST_F(BasicGraphTest, StepsFromRailToRailBetweenEqualVoltages) {
    Configure(1);
    Voltages(500, 500);
    const std::pair<std::int32_t, float> heights[] = {{499, 240}, {500, 240}, {501, 2160}};
    for (const auto &[voltage, height] : heights) {
        Set(ParamDefines::OutputVoltage, voltage);
        graph_.UpdateGraph();
        EXPECT_EQ(TheLine(LineId::LineVoltExt).y1, height) << voltage;
        EXPECT_EQ(TheLine(LineId::LineLinearSlope).y1, 2160);
    }
}

TEST_F(BasicGraphTest, SendsThePulseThroughTheSpaceOfTheTickBefore) {
    Set(ParamDefines::ActualDistance, 600); // a space of 960
    graph_.UpdateGraph();
    graph_.UpdateGraph();
    Set(ParamDefines::ActualDistance, 4600);
    graph_.UpdateGraph();
    EXPECT_EQ(TheLine(LineId::ZentrovaLine).x1, 940.0F / 15.0F);
    EXPECT_EQ(TheControl(ControlId::FrameZentrova).width, 7815);
    graph_.UpdateGraph();
    EXPECT_EQ(TheLine(LineId::ZentrovaLine).x1, 7795.0F * 2.0F / 15.0F);
}

TEST_F(BasicGraphTest, HidesTheTargetWithoutAnEcho) {
    for (const std::int32_t echo : {0, 2, -1}) {
        Set(ParamDefines::EchoReceived, 1);
        graph_.UpdateGraph();
        EXPECT_TRUE(TheControl(ControlId::FrameTarget).visible);
        Set(ParamDefines::EchoReceived, echo);
        graph_.UpdateGraph();
        EXPECT_FALSE(TheControl(ControlId::FrameTarget).visible) << echo;
    }
}

TEST_F(BasicGraphTest, ChangesNothingButThePulseWhileTheValuesStay) {
    Configure(2);
    graph_.UpdateGraph();
    DrawingChanges changes(drawing_);
    for (int tick = 0; tick < 40; ++tick) {
        graph_.UpdateGraph();
        const auto since = changes.Take();
        ASSERT_EQ(since.areas.size(), 2U);
        EXPECT_EQ(since.areas[0].parent, ControlId::FrameZentrova);
        EXPECT_EQ(since.areas[1].parent, ControlId::FrameZentrova);
        EXPECT_TRUE(since.controls.empty());
    }
}

TEST_F(BasicGraphTest, ChangesTheCursorAndWhatRidesOnItWithTheDistance) {
    Configure(1);
    graph_.UpdateGraph();
    DrawingChanges changes(drawing_);
    Set(ParamDefines::ActualDistance, 1100);
    graph_.UpdateGraph();
    const auto since = changes.Take();
    EXPECT_EQ(since.areas.size(), 4U); // the cursor and the pulse
    EXPECT_EQ(since.controls, (std::vector<ControlId>{ControlId::FrameActualDist, ControlId::FrameZentrova,
                                                      ControlId::FrameTarget}));
}

// The table as it is. --------------------------------------------------------------------------------

TEST_F(BasicGraphTest, FollowsATableThatSomebodyElseWrote) {
    Configure(1);
    EXPECT_FALSE(graph_.FollowTable());
    Set(ParamDefines::Relay1OnThreshold, 2600);
    EXPECT_TRUE(graph_.FollowTable());
    EXPECT_EQ(TheControl(ControlId::PicRelay, 0).left, 4920);

    Set(ParamDefines::AnalogOutputMode, 2);
    Set(ParamDefines::NearDistance, 1234);
    EXPECT_TRUE(graph_.FollowTable());
    EXPECT_FALSE(TheControl(ControlId::TextParam, 3).enabled);
    EXPECT_FALSE(TheLine(LineId::LineLinearSlope).visible);
    EXPECT_EQ(drawing_.LineHyperbolic().size(), 100U);
    EXPECT_EQ(zentrova_.ParamValue(ParamDefines::NearDistance), 1234); // a refresh writes nothing
    EXPECT_FALSE(graph_.FollowTable());

    const Line before = drawing_.LineHyperbolic()[50];
    Set(ParamDefines::CoreDiameter, 600);
    EXPECT_TRUE(graph_.FollowTable());
    EXPECT_EQ(drawing_.LineHyperbolic().size(), 100U);
    EXPECT_NE(drawing_.LineHyperbolic()[50], before);

    for (const std::int32_t mode : {0, 1, 7}) {
        Set(ParamDefines::AnalogOutputMode, mode);
        EXPECT_TRUE(graph_.FollowTable());
        EXPECT_TRUE(TheControl(ControlId::TextParam, 3).enabled);
        EXPECT_EQ(drawing_.LineHyperbolic().size(), 1U);
        EXPECT_EQ(TheControl(ControlId::FrameManOutput).visible, mode == 0);
        EXPECT_EQ(TheLine(LineId::LineLinearSlope).visible, mode == 1);
    }
}

TEST_F(BasicGraphTest, ShowsAfterARefreshWhatAConfigurationWouldShow) {
    for (const std::int32_t mode : {0, 2, 1, 9, 2, 0}) {
        Set(ParamDefines::AnalogOutputMode, mode);
        Set(ParamDefines::MaxDiameter, 2000 + 100 * mode);
        Set(ParamDefines::NearDistance, RollGeometry::NearDistance(zentrova_));
        graph_.FollowTable();
        const BasicDrawing followed = drawing_;
        graph_.ConfigureBasicTab();
        EXPECT_EQ(followed.Lines(), drawing_.Lines());
        EXPECT_EQ(followed.Controls(), drawing_.Controls());
        EXPECT_EQ(followed.LineHyperbolic(), drawing_.LineHyperbolic());
        EXPECT_FALSE(graph_.FollowTable());
    }
}

// A refresh comes without the user's doing. Unlike a configuration, it may not end the program.
TEST_F(BasicGraphTest, ShowsNoCurveForARollWithoutADiameterThatAPollBrings) {
    Configure(2);
    Set(ParamDefines::CoreDiameter, 0);
    Set(ParamDefines::MaxDiameter, 0);
    EXPECT_TRUE(graph_.FollowTable());
    EXPECT_EQ(drawing_.LineHyperbolic().size(), 1U);
    EXPECT_FALSE(graph_.FollowTable());
    Set(ParamDefines::MaxDiameter, 2400);
    EXPECT_TRUE(graph_.FollowTable());
    EXPECT_EQ(drawing_.LineHyperbolic().size(), 100U);
}

TEST_F(BasicGraphOnline, FollowsTheModeThatAPollBringsWhileTheWriteWaits) {
    Set(ParamDefines::NearDistance, 700);
    link_.busy = true;
    Configure(2);
    Set(ParamDefines::AnalogOutputMode, 1);
    EXPECT_TRUE(graph_.FollowTable());
    EXPECT_EQ(drawing_.LineHyperbolic().size(), 1U);
    EXPECT_TRUE(TheControl(ControlId::TextParam, 3).enabled);
    EXPECT_TRUE(TheLine(LineId::LineLinearSlope).visible);
}

// Values that aren't live. ---------------------------------------------------------------------------

TEST_F(BasicGraphTest, RestsThePulseAndDimsWhatIsMeasuredWhileItIsNotLive) {
    Configure(ParamDefines::LinearMode);
    Set(ParamDefines::ActualDistance, 2100);
    Set(ParamDefines::OutputVoltage, 500);
    for (int tick = 0; tick < 8; ++tick) {
        graph_.UpdateGraph();
    }
    const Line distance = TheLine(LineId::LineDistExt);
    EXPECT_GT(TheLine(LineId::ZentrovaLine).x1, 0);

    drawing_.MeasuredIsLive(false);
    for (int tick = 0; tick < 3; ++tick) {
        graph_.UpdateGraph();
    }
    EXPECT_EQ(TheLine(LineId::ZentrovaLine).x1, 0);
    EXPECT_TRUE(TheLine(LineId::LineDistExt) == distance) << "the last values stand";
    EXPECT_TRUE(TheControl(ControlId::FrameTarget).visible);
    Set(ParamDefines::NearDistance, 2100); // a setting that the user changes offline
    graph_.UpdateGraph();
    EXPECT_EQ(TheLine(LineId::LineDistExt).x1, TheLine(LineId::LineNearDistExt).x1);

    drawing_.MeasuredIsLive(true);
    for (int tick = 0; tick < 4; ++tick) {
        graph_.UpdateGraph();
    }
    EXPECT_GT(TheLine(LineId::ZentrovaLine).x1, 0);
}

TEST_F(BasicGraphTest, DoesNothingOnATickWhileThePulseRests) {
    Configure(ParamDefines::LinearMode);
    drawing_.MeasuredIsLive(false);
    graph_.UpdateGraph();
    DrawingChanges changes(drawing_);
    graph_.UpdateGraph();
    const DrawingChanges::Since since = changes.Take();
    EXPECT_TRUE(since.areas.empty());
    EXPECT_TRUE(since.controls.empty());
}

} // namespace ztv

#include "chart/ThresholdMarks.h"

#include "chart/BasicGraph.h"
#include "chart/RelayDrag.h"
#include "model/ParamDefines.h"
#include "tests/helpers/Printers.h"
#include "tests/helpers/TestPresets.h"

#include <gtest/gtest.h>

namespace ztv {

using namespace Drawing;

// Min Range 8.00", Near 12.00", Far 360.00", Max Range 400.00"; the thresholds are within them.
class ThresholdMarksTest : public testing::Test {
protected:
    ThresholdMarksTest() {
        Set(ParamDefines::MinRange, 800);
        Set(ParamDefines::MaxRange, 40000);
        Show();
    }

    void Set(std::int16_t tag, std::int32_t value) { zentrova_.ParamUpdate(tag, value); }
    void SetThreshold(int marker, std::int32_t value) {
        Set(static_cast<std::int16_t>(ParamDefines::Relay1OnThreshold + marker), value);
    }
    void Show() {
        graph_.PositionRelayMarkers();
        ThresholdMarks::Follow(zentrova_, drawing_);
    }
    const Control &Mark(int marker) const { return drawing_.At(ControlId::MarkRelay, marker); }
    bool Warns(int marker) const { return Mark(marker).visible && Mark(marker).figure == Figure::Warning; }

    ClassZentrova zentrova_{ShippedPresetsFolder()};
    BasicDrawing drawing_;
    BasicGraph graph_{zentrova_, drawing_};
};

TEST_F(ThresholdMarksTest, AreHiddenWhileAllThresholdsAreWithinTheRange) {
    for (int marker = 0; marker < 4; ++marker) {
        EXPECT_FALSE(Mark(marker).visible);
        EXPECT_EQ(Mark(marker).toolTip, QString());
    }
}

TEST_F(ThresholdMarksTest, WarnAHundredthBeyondTheRangeButNotAtItsEnds) {
    for (int marker = 0; marker < 4; ++marker) {
        for (const auto &[value, outside] : {std::pair{799, true},
                                             {800, false},
                                             {801, false},
                                             {39999, false},
                                             {40000, false},
                                             {40001, true}}) {
            SetThreshold(marker, value);
            Show();
            EXPECT_EQ(Warns(marker), outside) << marker << " at " << value;
            EXPECT_EQ(Mark(marker).toolTip.isEmpty(), !outside) << marker << " at " << value;
        }
        SetThreshold(marker, 6000);
    }
}

TEST_F(ThresholdMarksTest, GiveTheReason) {
    SetThreshold(1, 41000);
    SetThreshold(2, 700);
    Show();
    EXPECT_EQ(Mark(1).toolTip,
              QStringLiteral("Relay 2 can't switch here: 410.00\" is beyond Max Range 400.00\"."));
    EXPECT_EQ(Mark(2).toolTip,
              QStringLiteral("Relay 1 can't switch here: 7.00\" is below Min Range 8.00\"."));
    EXPECT_FALSE(Mark(0).visible);
    EXPECT_FALSE(Mark(3).visible);
    Set(ParamDefines::MaxRange, 41000);
    Show();
    EXPECT_FALSE(Warns(1));
    Set(ParamDefines::MinRange, 700);
    Show();
    EXPECT_FALSE(Warns(2));
}

TEST_F(ThresholdMarksTest, WarnOfEveryThresholdInARangeThatIsUpsideDown) {
    Set(ParamDefines::MinRange, 30000);
    Set(ParamDefines::MaxRange, 20000);
    for (const auto &[value, limit] : {std::pair{600, "is below Min Range 300.00\"."},
                                       {25000, "is beyond Max Range 200.00\"."},
                                       {42000, "is beyond Max Range 200.00\"."}}) {
        SetThreshold(0, value);
        Show();
        EXPECT_TRUE(Warns(0)) << value;
        EXPECT_TRUE(Mark(0).toolTip.endsWith(QString::fromLatin1(limit))) << Mark(0).toolTip.toStdString();
    }
}

TEST_F(ThresholdMarksTest, HaveTheirRelaysNumberAndColour) {
    for (int marker = 0; marker < 4; ++marker) {
        EXPECT_EQ(Mark(marker).caption, QString::number(marker % 2 + 1));
        EXPECT_EQ(Mark(marker).colour, drawing_.At(LineId::LineRelay, marker).colour);
        EXPECT_EQ(Mark(marker).parent, ControlId::FrameGraph);
    }
}

TEST_F(ThresholdMarksTest, StandApartWithinTheChartWhenAllThresholdsCollapseAtItsEdge) {
    const Control &chart = drawing_.At(ControlId::FrameGraph);
    for (const int value : {600, 800, 40000, 42000}) {
        for (int marker = 0; marker < 4; ++marker) {
            SetThreshold(marker, value);
        }
        Show();
        for (int one = 0; one < 4; ++one) {
            SCOPED_TRACE(value);
            EXPECT_TRUE(Mark(one).visible) << "the edge would cut the number off";
            EXPECT_GE(Mark(one).left, 0);
            EXPECT_GE(Mark(one).top, 0);
            EXPECT_LE(Mark(one).left + Mark(one).width, chart.width);
            EXPECT_LE(Mark(one).top + Mark(one).height, chart.height);
            for (int other = 0; other < one; ++other) {
                EXPECT_GE(std::abs(Mark(one).top - Mark(other).top), Mark(one).height) << one << other;
            }
        }
        EXPECT_LT(Mark(1).top, chart.height / 2) << "on";
        EXPECT_GT(Mark(3).top, chart.height / 2) << "off";
    }
}

TEST_F(ThresholdMarksTest, ANumberThatTheEdgeWouldCutOffNeedsNoWarning) {
    SetThreshold(1, 40000);
    Show();
    EXPECT_TRUE(Mark(1).visible);
    EXPECT_EQ(Mark(1).figure, Figure::None);
    EXPECT_EQ(Mark(1).toolTip, QString());
    SetThreshold(1, 39000); // 20 pixels from the edge
    Show();
    EXPECT_FALSE(Mark(1).visible);
}

TEST_F(ThresholdMarksTest, AMarkerThatTheUserHoldsHasNone) {
    RelayDrag drag(zentrova_, drawing_);
    SetThreshold(1, 41000);
    Show();
    drag.MouseDown(1, true, 0);
    Show();
    EXPECT_FALSE(Mark(1).visible);
    drag.MouseMove(1, true, -600);
    drag.MouseUp(1, true);
    Show();
    EXPECT_FALSE(Mark(1).visible) << "it is within the range now";
    EXPECT_LT(zentrova_.ParamValue(ParamDefines::Relay2OnThreshold), 40000);
}

TEST_F(ThresholdMarksTest, ReadNothingThatIsMeasured) {
    SetThreshold(1, 41000);
    drawing_.MeasuredIsLive(false);
    Show();
    EXPECT_TRUE(Warns(1));
    EXPECT_EQ(drawing_.ColourOf(Mark(1)), Colour::Olive) << "a setting isn't dimmed";
}

} // namespace ztv

#include "chart/RelayDrag.h"

#include "chart/BasicGraph.h"
#include "model/ParamDefines.h"
#include "support/Fault.h"
#include "tests/helpers/FakeLink.h"
#include "tests/helpers/Printers.h"
#include "tests/helpers/TestPresets.h"

#include <gtest/gtest.h>

namespace ztv {

using enum Drawing::ControlId;

// Min 600, Near 1200, Far 36000, Max 42000 at 0, 1920, 4920, 6840 twips; thresholds 6000, 24000, 7200, 26400.
class RelayDragTest : public testing::Test {
protected:
    RelayDragTest() {
        zentrova_.ConnectTo(&link_);
        graph_.ConfigureBasicTab();
    }

    float &Left(int marker) { return drawing_.At(PicRelay, marker).left; }
    const Drawing::Control &Label() { return drawing_.At(LabelRelayDist); }

    void Drag(int marker, float toLeft) {
        drag_.MouseDown(marker, true, 0);
        drag_.MouseMove(marker, true, toLeft - Left(marker));
        drag_.MouseUp(marker, true);
    }

    FakeLink link_;
    ClassZentrova zentrova_{ShippedPresetsFolder()};
    BasicDrawing drawing_;
    BasicGraph graph_{zentrova_, drawing_};
    RelayDrag drag_{zentrova_, drawing_};
};

TEST_F(RelayDragTest, HoveringChangesTheToolTipAlone) {
    const char *names[] = {"Relay 1 On Threshold=60.00\"", "Relay 2 On Threshold=240.00\"",
                           "Relay 1 Off Threshold=72.00\"", "Relay 2 Off Threshold=264.00\""};
    for (int marker = 0; marker < 4; ++marker) {
        const float before = Left(marker);
        drag_.MouseMove(marker, false, 300);
        drag_.MouseMove(marker, true, 300); // the button was pressed elsewhere
        EXPECT_EQ(drawing_.At(PicRelay, marker).toolTip, QString::fromLatin1(names[marker]));
        EXPECT_EQ(Left(marker), before);
    }
    EXPECT_FALSE(Label().visible);
    EXPECT_TRUE(link_.writes.empty());
}

TEST_F(RelayDragTest, FollowsThePointerAndWritesWhenLetGo) {
    drag_.MouseDown(0, true, 0);
    drag_.MouseMove(0, true, 3000 - Left(0));
    EXPECT_EQ(Left(0), 3000);
    EXPECT_TRUE(Label().visible);
    // 1200 + (3000 - 1920) / 3000 x 34800 = 13728
    EXPECT_EQ(Label().caption, QStringLiteral("Relay 1 On Threshold\n137.28\""));
    EXPECT_EQ(Label().left, 1560 + 3000 - 675 / 2.0F);
    EXPECT_TRUE(link_.writes.empty());
    drag_.MouseMove(0, true, 15);
    EXPECT_EQ(Left(0), 3015);
    drag_.MouseUp(0, true);
    EXPECT_EQ(link_.writes, (std::vector<std::pair<int, int>>{{56, 13902}}));
    EXPECT_FALSE(Label().visible);
    EXPECT_EQ(Left(0), 3015); // stays where it was dropped
    drag_.MouseMove(0, true, 500);
    EXPECT_EQ(Left(0), 3015);
}

TEST_F(RelayDragTest, WritesTheParameterOfTheMarker) {
    for (int marker = 0; marker < 4; ++marker) {
        Drag(marker, 1920);
        EXPECT_EQ(link_.writes.back(), std::make_pair(56 + marker, 1200));
    }
}

TEST_F(RelayDragTest, TakesExactValuesAtTheSlopesEnds) {
    Drag(0, 1920);
    EXPECT_EQ(zentrova_.ParamValue(56), 1200);
    Drag(0, 4920);
    EXPECT_EQ(zentrova_.ParamValue(56), 36000);
    // Each span with its own scale: 1905 of 1920 from 600 to 1200, 15 of 1920 from 36000 to 42000.
    Drag(0, 1905);
    EXPECT_EQ(zentrova_.ParamValue(56), 1195); // 1195.3125
    Drag(0, 4935);
    EXPECT_EQ(zentrova_.ParamValue(56), 36047); // 36046.875
    Drag(0, 1912);                              // 1197.5, a tie
    EXPECT_EQ(zentrova_.ParamValue(56), 1198);
    Drag(0, 1928); // 1292.8
    EXPECT_EQ(zentrova_.ParamValue(56), 1293);
}

TEST_F(RelayDragTest, StaysWithinTheChart) {
    Drag(0, 6830); // 6855 - 25
    EXPECT_EQ(Left(0), 6830);
    EXPECT_EQ(zentrova_.ParamValue(56), 41969); // 41968.75
    Drag(0, 6831);
    EXPECT_EQ(Left(0), 6830);
    Drag(0, 0); // the place of the smallest permitted threshold
    EXPECT_EQ(Left(0), 0);
    EXPECT_EQ(zentrova_.ParamValue(56), 600);
    Drag(0, -1);
    EXPECT_EQ(Left(0), 0);
}

TEST_F(RelayDragTest, DoesNotSnapToALimitThatAFastMovePasses) {
    drag_.MouseDown(1, true, 0);
    drag_.MouseMove(1, true, 5000 - Left(1));
    drag_.MouseMove(1, true, 9000);
    EXPECT_EQ(Left(1), 5000);
    drag_.MouseMove(1, true, -9000);
    EXPECT_EQ(Left(1), 5000);
    EXPECT_TRUE(Label().visible);
    drag_.MouseUp(1, true);
    EXPECT_EQ(zentrova_.ParamValue(57), 36250);
}

// Deliberate: the minimum of the first threshold, 600 raw, applies to all, wherever Min Range is.
TEST_F(RelayDragTest, EndsOnTheLeftWhereTheLeastThresholdStands) {
    zentrova_.ParamUpdate(ParamDefines::MinRange, 300);
    zentrova_.ParamUpdate(ParamDefines::NearDistance, 1200); // 600 is at 1920 / 3
    Drag(3, 640);
    EXPECT_EQ(Left(3), 640);
    Drag(3, 639);
    EXPECT_EQ(Left(3), 640);
}

TEST_F(RelayDragTest, YieldsMaxRangeBeyondTheFarPlateausEnd) {
    drawing_.At(Drawing::LineId::Line10V).x2 = 6800;
    Drag(2, 6820);
    EXPECT_EQ(zentrova_.ParamValue(58), 42000);
}

TEST_F(RelayDragTest, RoundsThePlaceToTheEvenNeighbour) {
    for (const auto &[place, rounded] :
         {std::pair(3000.5F, 3000.0F), {3001.5F, 3002.0F}, {3000.75F, 3001.0F}}) {
        Left(0) = 3100;
        Drag(0, place);
        EXPECT_EQ(Left(0), rounded);
    }
}

TEST_F(RelayDragTest, StartsWithTheLeftButtonAlone) {
    const float before = Left(0);
    drag_.MouseDown(0, false, 0);
    drag_.MouseMove(0, false, 300);
    drag_.MouseUp(0, false);
    EXPECT_EQ(Left(0), before);
    EXPECT_TRUE(link_.writes.empty());
}

TEST_F(RelayDragTest, GoesOnUntilTheLeftButtonIsLetGo) {
    drag_.MouseDown(0, true, 0);
    drag_.MouseUp(0, false);
    EXPECT_TRUE(link_.writes.empty());
    drag_.MouseMove(0, false, 300); // two buttons are pressed
    EXPECT_NE(Left(0), 300);
    drag_.MouseMove(0, true, 3000 - Left(0));
    EXPECT_EQ(Left(0), 3000);
    drag_.MouseUp(0, true);
    EXPECT_EQ(link_.writes.size(), 1U);
}

TEST_F(RelayDragTest, LetsAnOnThresholdPassItsOffThreshold) {
    Drag(0, 4000);
    EXPECT_GT(zentrova_.ParamValue(56), zentrova_.ParamValue(58));
}

TEST_F(RelayDragTest, StepsByTheKeyboardWithinTheSameLimits) {
    Left(0) = 30;
    drag_.Step(0, -15);
    drag_.Step(0, -15);
    drag_.Step(0, -15);
    EXPECT_EQ(Left(0), 0);
    EXPECT_TRUE(Label().visible);
    EXPECT_TRUE(link_.writes.empty());
    drag_.LetGo(0);
    EXPECT_EQ(link_.writes, (std::vector<std::pair<int, int>>{{56, 600}}));
    EXPECT_FALSE(Label().visible);
}

TEST_F(RelayDragTest, FaultsOnAMarkerThatThereIsNot) {
    EXPECT_THROW(drag_.MouseMove(4, true, 0), Fault);
    EXPECT_THROW(drag_.MouseDown(-1, true, 0), Fault);
}

TEST_F(RelayDragTest, EndsWhereItWasLetGoLastHoweverLongTheWritesWait) {
    Left(0) = 3000;
    link_.busy = true;
    for (int step = 0; step < 2; ++step) {
        drag_.Step(0, 15);
        drag_.LetGo(0);
    }
    EXPECT_EQ(Left(0), 3030);
    EXPECT_FALSE(Label().visible);
    link_.EndWrites(zentrova_);
    EXPECT_EQ(link_.writes, (std::vector<std::pair<int, int>>{{56, 14076}}));
    EXPECT_EQ(zentrova_.ParamValue(56), 14076);
}

TEST_F(RelayDragTest, KeepsTheOffsetOfThePress) {
    for (const float x : {-80.0F, 0.0F, 7.0F, 95.0F}) {
        Left(1) = 3000;
        drag_.MouseDown(1, true, x);
        drag_.MouseMove(1, true, x + 15);
        EXPECT_EQ(Left(1), 3015);
        drag_.MouseMove(1, true, x + 300); // relative to its present place
        EXPECT_EQ(Left(1), 3315);
        drag_.MouseUp(1, true);
        EXPECT_EQ(zentrova_.ParamValue(57), 17382);
    }
}

TEST_F(RelayDragTest, WritesNothingForAClickOrABackAndForth) {
    zentrova_.ParamUpdate(57, 24007);
    graph_.PositionRelayMarkers();
    const float home = Left(1);
    drag_.MouseDown(1, true, 0);
    drag_.MouseMove(1, true, 0);
    EXPECT_EQ(Left(1), home);
    EXPECT_FALSE(Label().visible);
    drag_.MouseMove(1, true, 200);
    drag_.MouseMove(1, true, home - Left(1));
    EXPECT_EQ(Left(1), home);
    EXPECT_EQ(Label().caption, QStringLiteral("Relay 2 On Threshold\n240.07\""));
    drag_.MouseUp(1, true);
    EXPECT_FALSE(Label().visible);
    EXPECT_TRUE(link_.writes.empty());
    drag_.MouseUp(1, true); // without a press
    EXPECT_TRUE(link_.writes.empty());
}

TEST_F(RelayDragTest, AMarkerInHandStaysThereWhateverTheTableSays) {
    drag_.MouseDown(0, true, 0);
    zentrova_.ParamUpdate(56, 30000);
    const float pressed = Left(0);
    graph_.PositionRelayMarkers();
    EXPECT_EQ(Left(0), pressed);
    drag_.MouseMove(0, true, 3000 - Left(0));
    graph_.PositionRelayMarkers();
    EXPECT_EQ(Left(0), 3000);
    link_.busy = true; // with another write
    drag_.MouseUp(0, true);
    EXPECT_EQ(zentrova_.ParamValue(56), 13728);
    zentrova_.ParamUpdate(56, 30000); // by a poll, while the write waits
    graph_.PositionRelayMarkers();
    EXPECT_EQ(zentrova_.ParamValue(56), 13728);
    link_.EndWrites(zentrova_);
    zentrova_.ParamWritePending(56, false);
    zentrova_.ParamUpdate(56, 36000);
    graph_.PositionRelayMarkers();
    EXPECT_EQ(Left(0), 4920);
}

TEST_F(RelayDragTest, AClickThatEndsLeavesTheMarkerToTheTable) {
    drag_.MouseDown(0, true, 0);
    drag_.MouseUp(0, true);
    zentrova_.ParamUpdate(56, 36000);
    graph_.PositionRelayMarkers();
    EXPECT_EQ(Left(0), 4920);
}

TEST_F(RelayDragTest, AnAbandonedDragGoesBackToTheTable) {
    drag_.MouseDown(0, true, 0);
    drag_.MouseMove(0, true, 3000 - Left(0));
    zentrova_.ParamUpdate(56, 36000);
    drag_.Abandon(0);
    EXPECT_EQ(Left(0), 4920);
    EXPECT_FALSE(Label().visible);
    drag_.MouseMove(0, true, 3000 - Left(0));
    EXPECT_EQ(Left(0), 4920);
    drag_.MouseUp(0, true);
    EXPECT_TRUE(link_.writes.empty());
}

TEST_F(RelayDragTest, StepsByTheRawValueExactly) {
    EXPECT_TRUE(drag_.StepValue(1, 1));
    EXPECT_TRUE(drag_.StepValue(1, 1));
    EXPECT_EQ(Label().caption, QStringLiteral("Relay 2 On Threshold\n240.02\""));
    EXPECT_TRUE(link_.writes.empty());
    drag_.LetGo(1);
    EXPECT_EQ(link_.writes, (std::vector<std::pair<int, int>>{{57, 24002}}));
    drag_.LetGo(1);
    EXPECT_EQ(link_.writes.size(), 1U);
    drag_.Step(1, 15); // from there
    drag_.StepValue(1, -1);
    drag_.LetGo(1);
    EXPECT_EQ(link_.writes.back(), std::make_pair(57, 24179)); // 3901 twips less a hundredth
}

TEST_F(RelayDragTest, StepsByTheRawValueWithinTheThresholdsLimits) {
    zentrova_.ParamUpdate(56, 600);
    EXPECT_FALSE(drag_.StepValue(0, -1));
    zentrova_.ParamUpdate(56, 42000);
    EXPECT_FALSE(drag_.StepValue(0, 1));
    EXPECT_TRUE(drag_.StepValue(0, -1));
}

// The label while the keyboard is at a marker. ------------------------------------------------------------

TEST_F(RelayDragTest, NamesTheMarkerThatHasTheKeyboardUntilItLosesIt) {
    const char *texts[] = {"Relay 1 On Threshold\n60.00\"", "Relay 2 On Threshold\n240.00\"",
                           "Relay 1 Off Threshold\n72.00\"", "Relay 2 Off Threshold\n264.00\""};
    for (int marker = 0; marker < 4; ++marker) {
        drag_.ShowFocused(marker);
        EXPECT_TRUE(Label().visible);
        EXPECT_EQ(Label().caption, QString::fromLatin1(texts[marker]));
        EXPECT_EQ(Label().left, 1560 + Left(marker) - 675 / 2.0F);
        drag_.HideFocused(marker);
        EXPECT_FALSE(Label().visible);
    }
    EXPECT_TRUE(link_.writes.empty());
}

TEST_F(RelayDragTest, ShowsTheValueWhileKeysMoveItAndAfterThem) {
    drag_.ShowFocused(1);
    drag_.StepValue(1, 1);
    EXPECT_EQ(Label().caption, QStringLiteral("Relay 2 On Threshold\n240.01\""));
    drag_.LetGo(1);
    EXPECT_TRUE(Label().visible);
    EXPECT_EQ(Label().caption, QStringLiteral("Relay 2 On Threshold\n240.01\""));
    drag_.HideFocused(1);
    EXPECT_FALSE(Label().visible);
}

TEST_F(RelayDragTest, FollowsTheTableWhileTheKeyboardIsAtAMarker) {
    drag_.ShowFocused(1);
    zentrova_.ParamUpdate(57, 20000);
    graph_.PositionRelayMarkers();
    drag_.Follow();
    EXPECT_EQ(Label().caption, QStringLiteral("Relay 2 On Threshold\n200.00\""));
    EXPECT_EQ(Label().left, 1560 + Left(1) - 675 / 2.0F);
}

TEST_F(RelayDragTest, HidesTheLabelWhenTheMouseLetsGoOfAMarkerThatHadTheKeyboard) {
    drag_.ShowFocused(0);
    drag_.MouseDown(0, true, 0);
    EXPECT_FALSE(Label().visible);
    drag_.MouseMove(0, true, 60);
    EXPECT_TRUE(Label().visible);
    drag_.MouseUp(0, true);
    EXPECT_FALSE(Label().visible);
    drag_.Follow();
    EXPECT_FALSE(Label().visible);
}

TEST_F(RelayDragTest, AMarkerThatLosesTheKeyboardLeavesTheNextOnesLabel) {
    drag_.ShowFocused(0);
    drag_.ShowFocused(2); // as the focus goes from one to the next, whichever is told first
    drag_.HideFocused(0);
    EXPECT_TRUE(Label().visible);
    EXPECT_EQ(Label().caption, QStringLiteral("Relay 1 Off Threshold\n72.00\""));
}

} // namespace ztv

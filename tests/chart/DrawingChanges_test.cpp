#include "chart/DrawingChanges.h"

#include <gtest/gtest.h>
#include <ostream>

namespace ztv {

using namespace Drawing;
using Area = DrawingChanges::Area;

static void PrintTo(const Area &area, std::ostream *out) {
    *out << static_cast<int>(area.parent) << ": " << area.left << ", " << area.top << " to " << area.right
         << ", " << area.bottom;
}

class DrawingChangesTest : public testing::Test {
protected:
    BasicDrawing drawing_;
    DrawingChanges changes_{drawing_};
};

TEST_F(DrawingChangesTest, FindsNothingWhereNothingChanged) {
    EXPECT_TRUE(changes_.Take().areas.empty());
    EXPECT_TRUE(changes_.Take().controls.empty());
}

TEST_F(DrawingChangesTest, FindsWhereALineWasAndWhereItIs) {
    drawing_.At(LineId::LineDistExt).x1 = 100;
    drawing_.At(LineId::LineDistExt).x2 = 100;
    const auto since = changes_.Take();
    EXPECT_EQ(since.areas, (std::vector<Area>{{ControlId::FrameGraph, 3480, 0, 3480, 2280},
                                              {ControlId::FrameGraph, 100, 0, 100, 2280}}));
    EXPECT_TRUE(since.controls.empty());
    EXPECT_TRUE(changes_.Take().areas.empty());
}

TEST_F(DrawingChangesTest, PutsTheEdgesOfAnAreaInOrder) {
    drawing_.At(LineId::LineVoltExt).y1 = 500; // from right to left
    EXPECT_EQ(changes_.Take().areas, (std::vector<Area>{{ControlId::FrameGraph, 0, 1200, 6840, 1200},
                                                        {ControlId::FrameGraph, 0, 500, 6840, 1200}}));
}

TEST_F(DrawingChangesTest, FindsALineThatAppearsOrDisappears) {
    const Area place{ControlId::FrameGraph, 4920, 240, 6840, 240};
    drawing_.At(LineId::Line10V).visible = false;
    EXPECT_EQ(changes_.Take().areas, std::vector<Area>{place});
    drawing_.At(LineId::Line10V).visible = true;
    EXPECT_EQ(changes_.Take().areas, std::vector<Area>{place});
}

TEST_F(DrawingChangesTest, PassesOverAHiddenLineThatMoves) {
    drawing_.At(LineId::Line10V).visible = false;
    changes_.Take();
    drawing_.At(LineId::Line10V).y1 = 2160;
    EXPECT_TRUE(changes_.Take().areas.empty());
}

TEST_F(DrawingChangesTest, TakesWhatWasChangedBackForNoChange) {
    drawing_.At(LineId::ZentrovaLine).visible = false;
    drawing_.At(ControlId::FrameTarget).left = 1;
    drawing_.At(LineId::ZentrovaLine).visible = true;
    drawing_.At(ControlId::FrameTarget).left = 4800;
    const auto since = changes_.Take();
    EXPECT_TRUE(since.areas.empty());
    EXPECT_TRUE(since.controls.empty());
}

TEST_F(DrawingChangesTest, FindsACurveAsAWhole) {
    const Point points[] = {{100, 50}, {80, 70}, {0, 60}};
    const Area place{ControlId::FrameGraph, 0, 50, 100, 70};
    drawing_.LoadCurve(points);
    EXPECT_EQ(changes_.Take().areas, std::vector<Area>{place});
    drawing_.LoadCurve(points);
    EXPECT_TRUE(changes_.Take().areas.empty());
    const Point moved[] = {{100, 50}, {80, 90}, {5, 60}};
    drawing_.LoadCurve(moved);
    EXPECT_EQ(changes_.Take().areas, (std::vector<Area>{place, {ControlId::FrameGraph, 5, 50, 100, 90}}));
    drawing_.UnloadCurve();
    EXPECT_EQ(changes_.Take().areas, (std::vector<Area>{{ControlId::FrameGraph, 5, 50, 100, 90}}));
}

TEST_F(DrawingChangesTest, FindsEachPropertyOfAControl) {
    drawing_.At(ControlId::FrameActualDist).left = 7;
    drawing_.At(ControlId::FrameTarget).visible = false;
    drawing_.At(ControlId::LabelRelayDist).caption = QStringLiteral("60.00");
    drawing_.At(ControlId::TextParam, 3).enabled = false;
    drawing_.At(ControlId::PicRelay, 2).toolTip = QStringLiteral("72.00");
    const auto since = changes_.Take();
    EXPECT_EQ(
        since.controls,
        (std::vector<ControlId>{ControlId::FrameActualDist, ControlId::FrameTarget, ControlId::LabelRelayDist,
                                Member(ControlId::TextParam, 3), Member(ControlId::PicRelay, 2)}));
    EXPECT_TRUE(since.areas.empty());
    EXPECT_TRUE(changes_.Take().controls.empty());
}

} // namespace ztv

#include "chart/BasicDrawing.h"

#include "support/Fault.h"
#include "tests/helpers/Printers.h"

#include <gtest/gtest.h>
#include <set>
#include <string>

namespace ztv {

using namespace Drawing;

namespace {

std::string Text(const Name &name) {
    return ToString(name).toStdString();
}

} // namespace

class BasicDrawingTest : public testing::Test {
protected:
    std::string NameOf(const std::optional<ControlId> &id) const {
        return id ? Text(drawing_.At(*id).name) : "the page";
    }

    BasicDrawing drawing_;
};

struct LineCase {
    LineId id;
    int index;
    const char *name;
    const char *parent;
    float x1, y1, x2, y2;
    Colour colour;
    LineStyle style;
    int width;
};

const LineCase lines[] = {
    {LineId::Line0V, 0, "Line0V", "FrameGraph", 0, 2160, 1920, 2160, Colour::Blue, LineStyle::Solid, 2},
    {LineId::LineLinearSlope, 0, "LineLinearSlope", "FrameGraph", 1920, 2160, 4920, 240, Colour::Blue,
     LineStyle::Solid, 2},
    {LineId::Line10V, 0, "Line10V", "FrameGraph", 4920, 240, 6840, 240, Colour::Blue, LineStyle::Solid, 2},
    {LineId::LineNearDistExt, 0, "LineNearDistExt(0)", "FrameGraph", 1920, 90, 1920, 2275, Colour::Green,
     LineStyle::Dot, 1},
    {LineId::LineNearDistExt, 1, "LineNearDistExt(1)", "FrameGraphGroup", 3480, 3360, 3480, 3840,
     Colour::Green, LineStyle::Dot, 1},
    {LineId::LineFarDistExt, 0, "LineFarDistExt(0)", "FrameGraph", 4920, 90, 4920, 2275, Colour::Green,
     LineStyle::Dot, 1},
    {LineId::LineFarDistExt, 1, "LineFarDistExt(1)", "FrameGraphGroup", 6480, 3360, 6480, 3840, Colour::Green,
     LineStyle::Dot, 1},
    {LineId::LineMinRange, 0, "LineMinRange", "FrameGraphGroup", 1560, 3360, 1560, 3840, Colour::Red,
     LineStyle::Dot, 1},
    {LineId::LineMaxRange, 0, "LineMaxRange", "FrameGraphGroup", 8385, 3360, 8385, 3840, Colour::Red,
     LineStyle::Dot, 1},
    {LineId::LineDistExt, 0, "LineDistExt(0)", "FrameGraph", 3480, 0, 3480, 2280, Colour::Text,
     LineStyle::Dot, 1},
    {LineId::LineDistExt, 1, "LineDistExt(1)", "FrameActualDist", 600, 480, 600, 1080, Colour::Text,
     LineStyle::Dot, 1},
    {LineId::LineVoltExt, 0, "LineVoltExt(0)", "FrameGraph", 6840, 1200, 0, 1200, Colour::Text,
     LineStyle::Dot, 1},
    {LineId::LineVoltExt, 1, "LineVoltExt(1)", "FrameOutputVoltage", 240, 480, 0, 480, Colour::Text,
     LineStyle::Dot, 1},
    {LineId::LineManual, 0, "LineManual", "FrameManOutput", 840, 480, 1200, 480, Colour::Text, LineStyle::Dot,
     1},
    {LineId::ZentrovaLine, 0, "ZentrovaLine", "FrameZentrova", 0, 600, 0, 840, Colour::Blue, LineStyle::Solid,
     1},
    {LineId::Line1, 0, "Line1", "FrameGraphGroup", 8640, 360, 9720, 360, Colour::Text, LineStyle::Dash, 1},
    {LineId::Line2, 0, "Line2", "FrameGraphGroup", 8640, 600, 9720, 600, Colour::Text, LineStyle::DashDot, 1},
    {LineId::LineRelay, 0, "LineRelay(0)", "PicRelay(0)", 12.5F, -150, 12.5F, 2200, Colour::Blue,
     LineStyle::Dash, 1},
    {LineId::LineRelay, 1, "LineRelay(1)", "PicRelay(1)", 12.5F, -150, 12.5F, 2200, Colour::Olive,
     LineStyle::Dash, 1},
    {LineId::LineRelay, 2, "LineRelay(2)", "PicRelay(2)", 12.5F, -55, 12.5F, 2200, Colour::Blue,
     LineStyle::DashDot, 1},
    {LineId::LineRelay, 3, "LineRelay(3)", "PicRelay(3)", 12.5F, -55, 12.5F, 2200, Colour::Olive,
     LineStyle::DashDot, 1},
};

TEST_F(BasicDrawingTest, LaysTheLinesOut) {
    EXPECT_EQ(drawing_.Lines().size(), std::size(lines));
    for (const LineCase &expected : lines) {
        SCOPED_TRACE(expected.name);
        const Line &line = drawing_.At(expected.id, expected.index);
        EXPECT_EQ(Text(line.name), expected.name);
        EXPECT_EQ(NameOf(line.parent), expected.parent);
        EXPECT_EQ(line.x1, expected.x1);
        EXPECT_EQ(line.y1, expected.y1);
        EXPECT_EQ(line.x2, expected.x2);
        EXPECT_EQ(line.y2, expected.y2);
        EXPECT_EQ(line.colour, expected.colour);
        EXPECT_EQ(line.style, expected.style);
        EXPECT_EQ(line.width, expected.width);
        EXPECT_TRUE(line.visible);
    }
}

TEST_F(BasicDrawingTest, KeepsATemplateOfTheCurvesSegmentsThatNeverShows) {
    ASSERT_EQ(drawing_.LineHyperbolic().size(), 1U);
    const Line &segment = drawing_.LineHyperbolic().front();
    EXPECT_EQ(Text(segment.name), "LineHyperbolic(0)");
    EXPECT_EQ(NameOf(segment.parent), "FrameGraph");
    EXPECT_EQ(segment.x1, 3120);
    EXPECT_EQ(segment.y1, 1920);
    EXPECT_EQ(segment.x2, 3840);
    EXPECT_EQ(segment.y2, 1920);
    EXPECT_EQ(segment.colour, Colour::Blue);
    EXPECT_EQ(segment.style, LineStyle::Solid);
    EXPECT_EQ(segment.width, 2);
    EXPECT_FALSE(segment.visible);
}

struct ControlCase {
    ControlId id;
    int index;
    const char *name;
    const char *parent;
    float left, top, width, height; // width 0: as the words need it
    const char *caption = "";
};

const ControlCase controls[] = {
    {ControlId::FrameGraphGroup, 0, "FrameGraphGroup", "the page", 0, 120, 9855, 4335},
    {ControlId::FrameGraph, 0, "FrameGraph", "FrameGraphGroup", 1560, 1080, 6855, 2295},
    {ControlId::FrameOutputVoltage, 0, "FrameOutputVoltage", "FrameGraphGroup", 8400, 1800, 1215, 735},
    {ControlId::FrameManOutput, 0, "FrameManOutput", "FrameGraphGroup", 360, 1800, 1215, 855},
    {ControlId::FrameActualDist, 0, "FrameActualDist", "FrameGraphGroup", 4440, 240, 1215, 855},
    {ControlId::FrameRange, 0, "FrameRange", "the page", 0, 4440, 9855, 1575},
    {ControlId::FrameTransducer, 0, "FrameTransducer", "FrameRange", 25, 720, 495, 495},
    {ControlId::FrameZentrova, 0, "FrameZentrova", "FrameRange", 600, 120, 4305, 1335},
    {ControlId::FrameTarget, 0, "FrameTarget", "FrameRange", 4800, 240, 1215, 1215},
    {ControlId::TextParam, 0, "TextParam(0)", "FrameGraphGroup", 600, 1200, 735, 285},
    {ControlId::TextParam, 1, "TextParam(1)", "FrameGraphGroup", 600, 3120, 735, 285},
    {ControlId::TextParam, 2, "TextParam(2)", "FrameGraphGroup", 1200, 3960, 735, 285},
    {ControlId::TextParam, 3, "TextParam(3)", "FrameGraphGroup", 3120, 3960, 735, 285},
    {ControlId::TextParam, 4, "TextParam(4)", "FrameGraphGroup", 6120, 3960, 735, 285},
    {ControlId::TextParam, 5, "TextParam(5)", "FrameGraphGroup", 8040, 3960, 735, 285},
    {ControlId::LabelParam, 0, "LabelParam(0)", "FrameGraphGroup", 480, 960, 0, 0, "Far Voltage"},
    {ControlId::LabelParam, 1, "LabelParam(1)", "FrameGraphGroup", 480, 2880, 0, 0, "Near Voltage"},
    {ControlId::LabelParam, 2, "LabelParam(2)", "FrameGraphGroup", 1080, 3720, 0, 0, "Min Range"},
    {ControlId::LabelParam, 3, "LabelParam(3)", "FrameGraphGroup", 2880, 3720, 0, 0, "Near Distance"},
    {ControlId::LabelParam, 4, "LabelParam(4)", "FrameGraphGroup", 6000, 3720, 0, 0, "Far Distance"},
    {ControlId::LabelParam, 5, "LabelParam(5)", "FrameGraphGroup", 7920, 3720, 0, 0, "Max Range"},
    {ControlId::LabelMode, 0, "LabelMode", "FrameGraphGroup", 120, 240, 0, 0, "Mode:"},
    {ControlId::PicRelay, 0, "PicRelay(0)", "FrameGraph", 120, 100, 25, 2175},
    {ControlId::PicRelay, 1, "PicRelay(1)", "FrameGraph", 5400, 100, 25, 2175},
    {ControlId::PicRelay, 2, "PicRelay(2)", "FrameGraph", 480, 100, 25, 2175},
    {ControlId::PicRelay, 3, "PicRelay(3)", "FrameGraph", 5880, 100, 25, 2175},
};

TEST_F(BasicDrawingTest, LaysTheControlsOut) {
    for (const ControlCase &expected : controls) {
        SCOPED_TRACE(expected.name);
        const Control &control = drawing_.At(expected.id, expected.index);
        EXPECT_EQ(Text(control.name), expected.name);
        EXPECT_EQ(NameOf(control.parent), expected.parent);
        EXPECT_EQ(control.left, expected.left);
        EXPECT_EQ(control.top, expected.top);
        if (expected.width > 0) {
            EXPECT_EQ(control.width, expected.width);
            EXPECT_EQ(control.height, expected.height);
        }
        EXPECT_EQ(control.caption.toStdString(), expected.caption);
        EXPECT_TRUE(control.visible);
        EXPECT_TRUE(control.enabled);
        EXPECT_EQ(control.border, expected.id == ControlId::FrameGraph);
    }
}

TEST_F(BasicDrawingTest, StandsTheReadingsInTheFramesThatMoveWithThem) {
    const std::pair<int, const char *> homes[] = {
        {6, "FrameActualDist"}, {7, "FrameOutputVoltage"}, {8, "FrameManOutput"}};
    for (const auto &[index, frame] : homes) {
        EXPECT_EQ(NameOf(drawing_.At(ControlId::TextParam, index).parent), frame);
        EXPECT_EQ(NameOf(drawing_.At(ControlId::LabelParam, index).parent), frame);
        EXPECT_EQ(drawing_.At(ControlId::TextParam, index).enabled, index == 8);
    }
    EXPECT_EQ(Text(drawing_.At(ControlId::TextParam, 8).name), "TextParam(8)");
    EXPECT_EQ(Text(drawing_.At(ControlId::LabelParam, 8).name), "LabelParam(8)");
    EXPECT_EQ(drawing_.At(ControlId::LabelParam, 6).caption, QStringLiteral("Actual Distance"));
    EXPECT_EQ(drawing_.At(ControlId::LabelParam, 7).caption, QStringLiteral("Output Voltage"));
    EXPECT_EQ(drawing_.At(ControlId::LabelParam, 8).caption, QStringLiteral("Manual Output"));
}

TEST_F(BasicDrawingTest, TellsTheRelaysAndThresholdsApart) {
    const char *tips[] = {"Relay 1 On Threshold", "Relay 2 On Threshold", "Relay 1 Off Threshold",
                          "Relay 2 Off Threshold"};
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(drawing_.At(ControlId::PicRelay, i).toolTip.toStdString(), tips[i]);
    }
    EXPECT_EQ(drawing_.At(ControlId::Label2).caption, QStringLiteral("On"));
    EXPECT_EQ(drawing_.At(ControlId::Label3).caption, QStringLiteral("Off"));
}

TEST_F(BasicDrawingTest, HidesTheLabelOfTheDraggedMarkerAtRest) {
    const Control &label = drawing_.At(ControlId::LabelRelayDist);
    EXPECT_EQ(Text(label.name), "LabelRelayDist");
    EXPECT_EQ(NameOf(label.parent), "FrameGraphGroup");
    EXPECT_EQ(label.left, 4680);
    EXPECT_EQ(label.top, 3360);
    EXPECT_EQ(label.width, 675);
    EXPECT_EQ(label.height, 195);
    EXPECT_EQ(label.caption, QStringLiteral("RelayDist"));
    EXPECT_FALSE(label.visible);
}

TEST_F(BasicDrawingTest, HasTheTransducerAndARoundRedTarget) {
    const auto shapes = BasicDrawing::Shapes();
    ASSERT_EQ(shapes.size(), 3U);
    EXPECT_EQ(Text(shapes[0].name), "Shape1");
    EXPECT_EQ(Text(shapes[1].name), "ShapeTransducerA");
    EXPECT_EQ(shapes[0].parent, ControlId::FrameTransducer);
    EXPECT_EQ(shapes[1].parent, ControlId::FrameTransducer);
    EXPECT_EQ(Text(shapes[2].name), "ShapeTarget");
    EXPECT_EQ(shapes[2].parent, ControlId::FrameTarget);
    EXPECT_EQ(shapes[2].outline, Outline::Circle);
    EXPECT_EQ(shapes[2].fill, Colour::Red);
    EXPECT_EQ(shapes[2].width, 1095);
    EXPECT_EQ(shapes[2].height, 1095);
    EXPECT_EQ(drawing_.At(ControlId::LabelTarget).caption, QStringLiteral("TARGET"));
    EXPECT_EQ(drawing_.At(ControlId::LabelTarget).parent, ControlId::FrameTarget);
}

TEST_F(BasicDrawingTest, KeepsEachShapeWithinItsFrame) {
    for (const Shape &shape : BasicDrawing::Shapes()) {
        SCOPED_TRACE(Text(shape.name));
        const Control &frame = drawing_.At(shape.parent);
        EXPECT_GE(shape.left, 0);
        EXPECT_GE(shape.top, 0);
        EXPECT_LE(shape.left + shape.width, frame.width);
        EXPECT_LE(shape.top + shape.height, frame.height);
    }
}

TEST_F(BasicDrawingTest, FaultsOnAnElementThatIsNotThere) {
    EXPECT_THROW(drawing_.At(LineId::LineRelay, 4), Fault);
    EXPECT_THROW(drawing_.At(ControlId::PicRelay, 4), Fault);
    EXPECT_THROW(drawing_.At(LineId::Line0V, -1), Fault);
}

TEST_F(BasicDrawingTest, LoadsASegmentBetweenEachTwoPoints) {
    const Point points[] = {{10, 20}, {30, 40}, {50, 5}};
    drawing_.LoadCurve(points);
    ASSERT_EQ(drawing_.LineHyperbolic().size(), 3U);
    const Line &first = drawing_.LineHyperbolic()[1];
    EXPECT_EQ(Text(first.name), "LineHyperbolic(1)");
    EXPECT_TRUE(first.visible);
    EXPECT_EQ(first.x1, 10);
    EXPECT_EQ(first.y1, 20);
    EXPECT_EQ(first.x2, 30);
    EXPECT_EQ(first.y2, 40);
    EXPECT_EQ(first.colour, Colour::Blue);
    EXPECT_EQ(first.width, 2);
    const Line &second = drawing_.LineHyperbolic()[2];
    EXPECT_EQ(Text(second.name), "LineHyperbolic(2)");
    EXPECT_EQ(second.x1, 30);
    EXPECT_EQ(second.y1, 40);
    EXPECT_EQ(second.x2, 50);
    EXPECT_EQ(second.y2, 5);

    drawing_.LoadCurve(points);
    EXPECT_EQ(drawing_.LineHyperbolic().size(), 3U);
    drawing_.UnloadCurve();
    ASSERT_EQ(drawing_.LineHyperbolic().size(), 1U);
    EXPECT_FALSE(drawing_.LineHyperbolic().front().visible);
}

TEST_F(BasicDrawingTest, GivesAPainterTheVisibleLinesOfAFrameInOrder) {
    drawing_.At(LineId::Line10V).visible = false;
    const auto namesIn = [this](ControlId parent) {
        std::vector<std::string> names;
        drawing_.VisitLines(parent, [&names](const Line &line) { names.push_back(Text(line.name)); });
        return names;
    };
    EXPECT_EQ(namesIn(ControlId::FrameGraph),
              (std::vector<std::string>{"Line0V", "LineLinearSlope", "LineNearDistExt(0)",
                                        "LineFarDistExt(0)", "LineDistExt(0)", "LineVoltExt(0)"}));
    EXPECT_EQ(namesIn(Member(ControlId::PicRelay, 2)), (std::vector<std::string>{"LineRelay(2)"}));
    EXPECT_EQ(namesIn(ControlId::FrameRange), std::vector<std::string>());
}

TEST_F(BasicDrawingTest, DimsOnlyWhatShowsAMeasuredValue) {
    const auto dimmed = [this] {
        std::set<std::string> names;
        for (const Line &line : drawing_.Lines()) {
            if (drawing_.ColourOf(line) == Colour::Dimmed) {
                names.insert(ToString(line.name).toStdString());
            } else {
                EXPECT_EQ(drawing_.ColourOf(line), line.colour);
            }
        }
        for (const Shape &shape : BasicDrawing::Shapes()) {
            if (drawing_.ColourOf(shape) == Colour::Dimmed) {
                names.insert(ToString(shape.name).toStdString());
            }
        }
        return names;
    };
    EXPECT_TRUE(dimmed().empty());
    drawing_.MeasuredIsLive(false);
    EXPECT_EQ(dimmed(), (std::set<std::string>{"LineDistExt(0)", "LineDistExt(1)", "LineVoltExt(0)",
                                               "LineVoltExt(1)", "ZentrovaLine", "ShapeTarget"}));
    drawing_.MeasuredIsLive(true);
    EXPECT_TRUE(dimmed().empty());
}

} // namespace ztv

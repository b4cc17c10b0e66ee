#pragma once

#include "chart/BasicFields.h"
#include "chart/DrawingElements.h"

#include <array>
#include <cstdint>
#include <optional>

namespace ztv {

// Initial layout of the Basic tab, in twips. The value boxes and their labels are in BasicFields. The rows
// are in the order of the enumerations.
namespace BasicLayout {

using enum Drawing::ControlId;
using enum Drawing::Colour;
using enum Drawing::LineStyle;
using enum Drawing::Outline;

// Vertical positions of the two voltage rails and of the labels and boxes beside them.
inline constexpr float UpperRail = 240;
inline constexpr float LowerRail = 2160;
inline constexpr float UpperLabelTop = 960;
inline constexpr float LowerLabelTop = 2880;
inline constexpr float UpperBoxTop = 1200;
inline constexpr float LowerBoxTop = 3120;

struct Panel {
    Drawing::Name name;
    std::optional<Drawing::ControlId> parent;
    BasicFields::Rectangle place = {};
    bool border = false;
};

inline constexpr std::array Panels = {
    Panel{{"FrameGraphGroup"}, {}, BasicFields::FrameGraphGroup, false},
    Panel{{"FrameGraph"}, FrameGraphGroup, BasicFields::FrameGraph, true},
    Panel{{"FrameOutputVoltage"}, FrameGraphGroup, BasicFields::FrameOutputVoltage, false},
    Panel{{"FrameManOutput"}, FrameGraphGroup, BasicFields::FrameManOutput, false},
    Panel{{"FrameActualDist"}, FrameGraphGroup, BasicFields::FrameActualDist, false},
    Panel{{"FrameRange"}, {}, {0, 4440, 9855, 1575}, false},
    Panel{{"FrameTransducer"}, FrameRange, {25, 720, 495, 495}, false},
    Panel{{"FrameZentrova"}, FrameRange, {600, 120, 4305, 1335}, false},
    Panel{{"FrameTarget"}, FrameRange, {4800, 240, 1215, 1215}, false},
};

struct Label {
    Drawing::Name name;
    Drawing::ControlId parent = FrameGraphGroup;
    BasicFields::Rectangle place = {};
    const char *caption = "";
    bool visible = true;
    Drawing::Colour colour = Text;
    bool measured = false;
};

// The right edge of the part of the page that the smallest window shows.
inline constexpr float VisibleRight = 9450;

inline constexpr std::array Labels = {
    Label{{"LabelMode"}, FrameGraphGroup, BasicFields::LabelMode, "Mode:", true},
    Label{{"Label2"}, FrameGraphGroup, {9075, 240, 645, 240}, "On", true},
    Label{{"Label3"}, FrameGraphGroup, {9075, 480, 645, 240}, "Off", true},
    Label{{"LabelTarget"}, FrameTarget, {60, 480, 1095, 240}, "TARGET", true},
    Label{{"LabelRelayDist"}, FrameGraphGroup, {4680, 3360, 675, 195}, "RelayDist", false},
    Label{{"LabelRelays"}, FrameGraphGroup, {7725, 0, 855, 240}, "Relays"},
    Label{{"LabelEcho"}, FrameRange, {0, 180, 600, 510}, "Echo", true, Text, true},
    Label{{"LabelNoEcho"}, FrameRange, {4800, 240, 1215, 1095}, "NO ECHO", false, Amber},
    Label{{"LabelDiameter"}, FrameGraphGroup, {5100, 780, 1350, 240}, "Diameter", false, Text, true},
};

constexpr Drawing::Line Measured(Drawing::Line line) {
    line.measured = true;
    return line;
}

inline constexpr std::array Lines = {
    Drawing::Line{{"Line0V"}, FrameGraph, 0, LowerRail, 1920, LowerRail, Blue, Solid, 2},
    Drawing::Line{{"LineLinearSlope"}, FrameGraph, 1920, LowerRail, 4920, UpperRail, Blue, Solid, 2},
    Drawing::Line{{"Line10V"}, FrameGraph, 4920, UpperRail, 6840, UpperRail, Blue, Solid, 2},
    Drawing::Line{{"LineNearDistExt", 0}, FrameGraph, 1920, 90, 1920, 2275, Green, Dot},
    Drawing::Line{{"LineNearDistExt", 1}, FrameGraphGroup, 3480, 3360, 3480, 3840, Green, Dot},
    Drawing::Line{{"LineFarDistExt", 0}, FrameGraph, 4920, 90, 4920, 2275, Green, Dot},
    Drawing::Line{{"LineFarDistExt", 1}, FrameGraphGroup, 6480, 3360, 6480, 3840, Green, Dot},
    Drawing::Line{{"LineMinRange"}, FrameGraphGroup, 1560, 3360, 1560, 3840, Red, Dot},
    Drawing::Line{{"LineMaxRange"}, FrameGraphGroup, 8385, 3360, 8385, 3840, Red, Dot},
    Measured({{"LineDistExt", 0}, FrameGraph, 3480, 0, 3480, 2280, Text, Dot}),
    Measured({{"LineDistExt", 1}, FrameActualDist, 600, 480, 600, 1080, Text, Dot}),
    Measured({{"LineVoltExt", 0}, FrameGraph, 6840, 1200, 0, 1200, Text, Dot}),
    Measured({{"LineVoltExt", 1}, FrameOutputVoltage, 240, 480, 0, 480, Text, Dot}),
    Drawing::Line{{"LineManual"}, FrameManOutput, 840, 480, 1200, 480, Text, Dot},
    Measured({{"ZentrovaLine"}, FrameZentrova, 0, 600, 0, 840, Blue, Solid}),
    Drawing::Line{{"Line1"}, FrameGraphGroup, 8640, 360, 9720, 360, Text, Dash},
    Drawing::Line{{"Line2"}, FrameGraphGroup, 8640, 600, 9720, 600, Text, DashDot},
};

// LineHyperbolic(0): the template for the segments of the curve.
inline constexpr Drawing::Line Segment{
    {"LineHyperbolic", 0}, FrameGraph, 3120, 1920, 3840, 1920, Blue, Solid, 2, false};

inline constexpr Drawing::Shape Target{{"ShapeTarget"}, FrameTarget, 60, 60, 1095, 1095, Circle, Red, true};

inline constexpr std::array Shapes = {
    Drawing::Shape{{"Shape1"}, FrameTransducer, 0, 0, 360, 495, Rectangle, Gray},
    Drawing::Shape{{"ShapeTransducerA"}, FrameTransducer, 360, 60, 135, 375, Rectangle, Blue},
    Target,
};

// The lamps in the legend, one for each relay.
struct Lamp {
    std::int16_t state; // the parameter
    BasicFields::Rectangle place;
    Drawing::Colour colour;
};

inline constexpr std::array Lamps = {
    Lamp{ParamDefines::Relay1State, {8640, 15, 390, 210}, Blue},
    Lamp{ParamDefines::Relay2State, {9060, 15, 390, 210}, Olive},
};

// The horizontal gap between the line of the distance and the diameter beside it.
inline constexpr float DiameterGap = 60;

// The diameter ends there at the latest, where the output voltage begins.
inline constexpr float DiameterRight = 8565;

// The markers PicRelay: vertical strips of the chart with a LineRelay in the middle.
inline constexpr float RelayTop = 100;
inline constexpr float RelayWidth = 25;
inline constexpr float RelayHeight = 2175;
inline constexpr float RelayLineEnd = 2200;

struct Relay {
    std::int16_t threshold; // the parameter
    const char *toolTip;
    float left;
    float lineStart;
    Drawing::Colour colour;
    Drawing::LineStyle style;
};

inline constexpr std::array Relays = {
    Relay{ParamDefines::Relay1OnThreshold, "Relay 1 On Threshold", 120, -150, Blue, Dash},
    Relay{ParamDefines::Relay2OnThreshold, "Relay 2 On Threshold", 5400, -150, Olive, Dash},
    Relay{ParamDefines::Relay1OffThreshold, "Relay 1 Off Threshold", 480, -55, Blue, DashDot},
    Relay{ParamDefines::Relay2OffThreshold, "Relay 2 Off Threshold", 5880, -55, Olive, DashDot},
};

// Returns the number of the relay to which a marker belongs. The markers are those of "on", then of "off".
constexpr int RelayOf(int marker) {
    return marker % static_cast<int>(Lamps.size()) + 1;
}
constexpr bool IsOn(int marker) {
    return marker < static_cast<int>(Lamps.size());
}

// The marks at thresholds outside the range. Each stands at the inner side of its marker, in the row of its
// relay: the upper rows for "on", the lower ones for "off".
inline constexpr float MarkWidth = 330;
inline constexpr float MarkHeight = 180;
inline constexpr float MarkGap = 90;

// Half the width of the number that a marker has.
inline constexpr float HalfNumber = 60;

} // namespace BasicLayout

} // namespace ztv

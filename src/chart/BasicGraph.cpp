#include "chart/BasicGraph.h"

#include "chart/BasicLayout.h"
#include "chart/DistanceAxis.h"
#include "chart/HyperbolicCurve.h"
#include "model/Global.h"
#include "model/ParamDefines.h"
#include "model/RollGeometry.h"

#include <algorithm>

namespace ztv {

using enum Drawing::ControlId;
using enum Drawing::LineId;

namespace {

struct Parts {
    bool farVoltage = false;
    bool nearVoltage = false;
    bool manOutput = false;
    bool line0V = false;
    bool line10V = false;
    bool slope = false;
    bool diameter = false;
};

Parts PartsOf(std::int32_t mode) {
    switch (mode) {
    case ParamDefines::ManualMode:
        return {.manOutput = true};
    case ParamDefines::LinearMode:
        return {.farVoltage = true, .nearVoltage = true, .line0V = true, .line10V = true, .slope = true};
    case ParamDefines::HyperbolicMode:
        return {.farVoltage = true, .line10V = true, .diameter = true};
    default:
        return {};
    }
}

void SetHeight(Drawing::Line &line, float y1, float y2) {
    line.y1 = y1;
    line.y2 = y2;
}

} // namespace

BasicGraph::BasicGraph(ClassZentrova &zentrova, BasicDrawing &drawing)
    : zentrova_(zentrova),
      drawing_(drawing) {}

void BasicGraph::ConfigureBasicTab() {
    const std::int32_t mode = Value(ParamDefines::AnalogOutputMode);
    ShowPartsOf(mode);
    if (mode == ParamDefines::HyperbolicMode) {
        DrawHyperbolicCurve();
    } else {
        RemoveHyperbolicCurve();
    }
    PositionRelayMarkers();
}

void BasicGraph::ShowPartsOf(std::int32_t mode) {
    const Parts parts = PartsOf(mode);
    drawing_.At(LabelParam, BasicFields::FarVoltage).visible = parts.farVoltage;
    drawing_.At(TextParam, BasicFields::FarVoltage).visible = parts.farVoltage;
    drawing_.At(LabelParam, BasicFields::NearVoltage).visible = parts.nearVoltage;
    drawing_.At(TextParam, BasicFields::NearVoltage).visible = parts.nearVoltage;
    drawing_.At(FrameManOutput).visible = parts.manOutput;
    drawing_.At(Line0V).visible = parts.line0V;
    drawing_.At(Line10V).visible = parts.line10V;
    drawing_.At(LineLinearSlope).visible = parts.slope;
    drawing_.At(LabelDiameter).visible = parts.diameter;
    PlaceDiameter();
    mode_ = mode;
}

void BasicGraph::RemoveHyperbolicCurve() {
    drawing_.UnloadCurve();
    curve_.reset();
    drawing_.At(TextParam, BasicFields::NearDistance).enabled = true;
}

void BasicGraph::DrawHyperbolicCurve() {
    RemoveHyperbolicCurve();
    drawing_.At(TextParam, BasicFields::NearDistance).enabled = false;
    // Deliberate: showing the tab writes the near distance of the roll to the sensor.
    zentrova_.ParamValue(ParamDefines::NearDistance, RollGeometry::NearDistance(zentrova_));
    LoadCurve();
}

BasicGraph::Roll BasicGraph::RollOfTable() const {
    return {.coreDiameter = Value(ParamDefines::CoreDiameter),
            .maxDiameter = Value(ParamDefines::MaxDiameter),
            .coreRail = drawing_.At(Line10V).y1,
            .rollRail = drawing_.At(Line0V).y1};
}

void BasicGraph::LoadCurve() {
    drawing_.LoadCurve(HyperbolicCurve::Points(zentrova_, drawing_.At(Line10V), drawing_.At(Line0V)));
    curve_ = RollOfTable();
}

bool BasicGraph::FollowTable() {
    const bool otherMode = FollowMode();
    const bool otherRoll = FollowRoll();
    return PositionRelayMarkers() || otherMode || otherRoll;
}

bool BasicGraph::FollowMode() {
    const std::int32_t mode = Value(ParamDefines::AnalogOutputMode);
    if (mode_ == mode) {
        return false;
    }
    ShowPartsOf(mode);
    drawing_.At(TextParam, BasicFields::NearDistance).enabled = mode != ParamDefines::HyperbolicMode;
    return true;
}

bool BasicGraph::FollowRoll() {
    std::optional<Roll> wanted;
    if (mode_ == ParamDefines::HyperbolicMode && RollGeometry::Exists(zentrova_)) {
        wanted = RollOfTable();
    }
    if (wanted == curve_) {
        return false;
    }
    if (wanted) {
        LoadCurve();
    } else {
        drawing_.UnloadCurve();
        curve_.reset();
    }
    return true;
}

bool BasicGraph::PositionRelayMarkers() {
    bool moved = false;
    const DistanceAxis::Spans spans = DistanceAxis::OfMarkers(drawing_);
    int index = 0;
    for (const BasicLayout::Relay &relay : BasicLayout::Relays) {
        Drawing::Control &strip = drawing_.At(PicRelay, index);
        const float left = DistanceAxis::PositionOf(Value(relay.threshold), zentrova_, spans);
        if (!strip.held && strip.left != left) {
            strip.left = left;
            moved = true;
        }
        ++index;
    }
    return moved;
}

void BasicGraph::UpdateGraph() {
    MovePulse();
    if (Value(ParamDefines::AnalogOutputMode) == ParamDefines::LinearMode) {
        TurnRails();
    }
    MoveDistanceCursor();
    MoveVoltageCursor();
    MoveTarget();
}

// A pulse that runs says that the sensor measures.
void BasicGraph::MovePulse() {
    const bool echo = Value(ParamDefines::EchoReceived) == ParamDefines::EchoPresent;
    if (drawing_.MeasuredIsLive()) {
        pulse_.Advance(drawing_, echo);
    } else {
        pulse_.Rest(drawing_, echo);
    }
}

// Puts the rail of the larger voltage on top, and the voltages' boxes beside their rails.
void BasicGraph::TurnRails() {
    using namespace BasicLayout;
    const bool upright = Value(ParamDefines::FarVoltage) >= Value(ParamDefines::NearVoltage);
    const float nearRail = upright ? LowerRail : UpperRail;
    const float farRail = upright ? UpperRail : LowerRail;
    SetHeight(drawing_.At(Line0V), nearRail, nearRail);
    SetHeight(drawing_.At(Line10V), farRail, farRail);
    SetHeight(drawing_.At(LineLinearSlope), nearRail, farRail);
    drawing_.At(LabelParam, BasicFields::FarVoltage).top = upright ? UpperLabelTop : LowerLabelTop;
    drawing_.At(LabelParam, BasicFields::NearVoltage).top = upright ? LowerLabelTop : UpperLabelTop;
    drawing_.At(TextParam, BasicFields::FarVoltage).top = upright ? UpperBoxTop : LowerBoxTop;
    drawing_.At(TextParam, BasicFields::NearVoltage).top = upright ? LowerBoxTop : UpperBoxTop;
}

void BasicGraph::MoveDistanceCursor() {
    const Drawing::Control &graph = drawing_.At(FrameGraph);
    const float nearX = drawing_.At(LineNearDistExt).x1;
    const float farX = drawing_.At(LineFarDistExt).x1;
    Drawing::Line &cursor = drawing_.At(LineDistExt);
    // The last span ends at the chart's edge, 15 twips to the right of the relay markers' last span.
    cursor.x1 = DistanceAxis::PositionOf(
        Value(ParamDefines::ActualDistance), zentrova_,
        {.minToNear = {0, nearX}, .nearToFar = {nearX, farX}, .farToMax = {farX, graph.width}});
    cursor.x2 = cursor.x1;
    cursor.y2 = graph.height;

    Drawing::Control &reading = drawing_.At(FrameActualDist);
    reading.left = graph.left + cursor.x1 - reading.width / 2 + 7;
    PlaceDiameter();
}

// Puts the diameter at the right of the line between the distance and its cursor, or at the left where there
// is no room.
void BasicGraph::PlaceDiameter() {
    using namespace BasicLayout;
    Drawing::Control &diameter = drawing_.At(LabelDiameter);
    if (!diameter.visible) {
        return;
    }
    const float line = drawing_.At(FrameActualDist).left + drawing_.At(LineDistExt, 1).x1;
    const bool fits = line + DiameterGap + diameter.width <= DiameterRight;
    diameter.left = fits ? line + DiameterGap : line - DiameterGap - diameter.width;
}

void BasicGraph::MoveVoltageCursor() {
    const Drawing::Control &graph = drawing_.At(FrameGraph);
    // Read also while the line is hidden: the scale is the same in every mode.
    const Drawing::Line &slope = drawing_.At(LineLinearSlope);
    const std::int32_t voltage = Value(ParamDefines::OutputVoltage);
    const std::int32_t nearVoltage = Value(ParamDefines::NearVoltage);
    const std::int32_t farVoltage = Value(ParamDefines::FarVoltage);
    const double height =
        farVoltage > nearVoltage
            ? Global::InterpolateClipped(voltage, nearVoltage, farVoltage, slope.y1, slope.y2)
            : Global::InterpolateClipped(voltage, farVoltage, nearVoltage, slope.y2, slope.y1);

    Drawing::Line &cursor = drawing_.At(LineVoltExt);
    cursor.x1 = 0;
    cursor.y1 = static_cast<float>(height);
    cursor.x2 = graph.width;
    cursor.y2 = cursor.y1;

    Drawing::Control &reading = drawing_.At(FrameOutputVoltage);
    reading.top = graph.top + cursor.y1 - drawing_.At(LineVoltExt, 1).y1;
    drawing_.At(FrameManOutput).top = reading.top;
}

// Ends the pulse's space at the target, so that the pulse takes the same number of ticks at every distance.
void BasicGraph::MoveTarget() {
    Drawing::Control &target = drawing_.At(FrameTarget);
    Drawing::Control &space = drawing_.At(FrameZentrova);
    target.left = drawing_.At(FrameGraph).left + drawing_.At(LineDistExt).x1;
    space.width = target.left - space.left;
    ShowNoEcho(target);
}

// Says in the target's place that there is none. An echo that isn't a present one is no news.
void BasicGraph::ShowNoEcho(const Drawing::Control &target) {
    Drawing::Control &noEcho = drawing_.At(LabelNoEcho);
    noEcho.visible = drawing_.MeasuredIsLive() && !target.visible;
    if (noEcho.visible) {
        noEcho.left = std::min(target.left, BasicLayout::VisibleRight - noEcho.width);
    }
}

} // namespace ztv

#include "chart/BasicDrawing.h"

#include "chart/BasicLayout.h"
#include "model/CheckedAt.h"

namespace ztv {

namespace {

using namespace Drawing;

// Verifies that the tables have one row for each enumerator.
static_assert(BasicLayout::Lines.size() == static_cast<std::size_t>(LineId::LineRelay));
static_assert(BasicLayout::Panels.size() == static_cast<std::size_t>(ControlId::LabelMode));
static_assert(BasicLayout::Panels.size() + BasicLayout::Labels.size() ==
              static_cast<std::size_t>(ControlId::TextParam));
static_assert(ControlId::LabelParam == Member(ControlId::TextParam, BasicFields::Table.size()));
static_assert(ControlId::LampRelay == Member(ControlId::LabelParam, BasicFields::Table.size()));
static_assert(ControlId::MarkRelay == Member(ControlId::LampRelay, BasicLayout::Lamps.size()));
static_assert(ControlId::PicRelay == Member(ControlId::MarkRelay, BasicLayout::Relays.size()));

Control Placed(const Name &name, std::optional<ControlId> parent, const BasicFields::Rectangle &place) {
    return {.name = name,
            .parent = parent,
            .left = static_cast<float>(place.left),
            .top = static_cast<float>(place.top),
            .width = static_cast<float>(place.width),
            .height = static_cast<float>(place.height)};
}

ControlId ParentOf(const BasicFields::Field &field) {
    switch (field.home) {
    case BasicFields::Home::ActualDist:
        return ControlId::FrameActualDist;
    case BasicFields::Home::OutputVoltage:
        return ControlId::FrameOutputVoltage;
    case BasicFields::Home::ManOutput:
        return ControlId::FrameManOutput;
    case BasicFields::Home::Group:
        break;
    }
    return ControlId::FrameGraphGroup;
}

void AddPanels(std::vector<Control> &controls) {
    for (const BasicLayout::Panel &panel : BasicLayout::Panels) {
        controls.push_back(Placed(panel.name, panel.parent, panel.place));
        controls.back().border = panel.border;
    }
}

void AddLabels(std::vector<Control> &controls) {
    for (const BasicLayout::Label &label : BasicLayout::Labels) {
        controls.push_back(Placed(label.name, label.parent, label.place));
        controls.back().caption = QString::fromLatin1(label.caption);
        controls.back().visible = label.visible;
        controls.back().colour = label.colour;
        controls.back().measured = label.measured;
    }
}

void AddFields(std::vector<Control> &controls) {
    int index = 0;
    for (const BasicFields::Field &field : BasicFields::Table) {
        controls.push_back(
            Placed({"TextParam", index}, ParentOf(field),
                   {field.boxLeft, field.boxTop, BasicFields::BoxWidth, BasicFields::BoxHeight}));
        controls.back().enabled = !field.displayOnly;
        ++index;
    }
    index = 0;
    for (const BasicFields::Field &field : BasicFields::Table) {
        controls.push_back(Placed({"LabelParam", index}, ParentOf(field), field.label));
        controls.back().caption = QString::fromLatin1(field.caption);
        ++index;
    }
}

void AddLamps(std::vector<Control> &controls) {
    int index = 0;
    for (const BasicLayout::Lamp &lamp : BasicLayout::Lamps) {
        controls.push_back(Placed({"LampRelay", index}, ControlId::FrameGraphGroup, lamp.place));
        controls.back().caption = QString::number(index + 1);
        controls.back().colour = lamp.colour;
        controls.back().figure = Figure::Lamp;
        controls.back().measured = true;
        ++index;
    }
}

void AddMarks(std::vector<Control> &controls) {
    int index = 0;
    for (const BasicLayout::Relay &relay : BasicLayout::Relays) {
        controls.push_back({.name = {"MarkRelay", index},
                            .parent = ControlId::FrameGraph,
                            .width = BasicLayout::MarkWidth,
                            .height = BasicLayout::MarkHeight,
                            .visible = false});
        controls.back().caption = QString::number(BasicLayout::RelayOf(index));
        controls.back().figure = Figure::Warning;
        controls.back().colour = relay.colour;
        ++index;
    }
}

void AddRelays(std::vector<Control> &controls, std::vector<Line> &lines) {
    int index = 0;
    for (const BasicLayout::Relay &relay : BasicLayout::Relays) {
        controls.push_back({.name = {"PicRelay", index},
                            .parent = ControlId::FrameGraph,
                            .left = relay.left,
                            .top = BasicLayout::RelayTop,
                            .width = BasicLayout::RelayWidth,
                            .height = BasicLayout::RelayHeight});
        controls.back().toolTip = QString::fromLatin1(relay.toolTip);

        const float middle = BasicLayout::RelayWidth / 2;
        lines.push_back({.name = {"LineRelay", index},
                         .parent = Member(ControlId::PicRelay, index),
                         .x1 = middle,
                         .y1 = relay.lineStart,
                         .x2 = middle,
                         .y2 = BasicLayout::RelayLineEnd,
                         .colour = relay.colour,
                         .style = relay.style});
        ++index;
    }
}

} // namespace

BasicDrawing::BasicDrawing()
    : lines_(BasicLayout::Lines.begin(), BasicLayout::Lines.end()),
      curve_{BasicLayout::Segment} {
    AddPanels(controls_);
    AddLabels(controls_);
    AddFields(controls_);
    AddLamps(controls_);
    AddMarks(controls_);
    AddRelays(controls_, lines_);
}

Line &BasicDrawing::At(LineId line, int index) {
    return CheckedAt(lines_, static_cast<int>(Member(line, index)), "line");
}
const Line &BasicDrawing::At(LineId line, int index) const {
    return CheckedAt(lines_, static_cast<int>(Member(line, index)), "line");
}
Control &BasicDrawing::At(ControlId control, int index) {
    return CheckedAt(controls_, static_cast<int>(Member(control, index)), "control");
}
const Control &BasicDrawing::At(ControlId control, int index) const {
    return CheckedAt(controls_, static_cast<int>(Member(control, index)), "control");
}

void BasicDrawing::LoadCurve(std::span<const Point> points) {
    UnloadCurve();
    for (std::size_t i = 1; i < points.size(); ++i) {
        Line segment = curve_.front();
        segment.name.index = curve_.back().name.index + 1;
        segment.visible = true;
        segment.x1 = points[i - 1].x;
        segment.y1 = points[i - 1].y;
        segment.x2 = points[i].x;
        segment.y2 = points[i].y;
        curve_.push_back(segment);
    }
}

void BasicDrawing::UnloadCurve() {
    curve_.resize(1, BasicLayout::Segment);
}

std::span<const Shape> BasicDrawing::Shapes() {
    return BasicLayout::Shapes;
}

} // namespace ztv

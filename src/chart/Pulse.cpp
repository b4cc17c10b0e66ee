#include "chart/Pulse.h"

#include "support/Numbers.h"

namespace ztv {

namespace {

constexpr std::int16_t lastStep = 15;
constexpr float growth = 15;     // twips at each end, each tick
constexpr float halfLength = 60; // length of a new pulse on either side of the centre

void MakeNew(Drawing::Line &line, const Drawing::Control &space) {
    const auto centre = static_cast<float>(ToInt32(space.height / 2));
    line.y1 = centre - halfLength;
    line.y2 = centre + halfLength;
    line.visible = true;
}

} // namespace

void Pulse::Advance(BasicDrawing &drawing, bool echo) {
    const Drawing::Control &space = drawing.At(Drawing::ControlId::FrameZentrova);
    Drawing::Control &target = drawing.At(Drawing::ControlId::FrameTarget);
    Drawing::Line &line = drawing.At(Drawing::LineId::ZentrovaLine);

    line.x1 = (space.width - 20) * static_cast<float>(step_) / static_cast<float>(lastStep);
    line.x2 = line.x1;
    line.y1 -= growth;
    line.y2 += growth;

    step_ = ToInt16(outbound_ ? step_ + 1 : step_ - 1);
    if (step_ > lastStep) {
        step_ = lastStep;
        outbound_ = false;
    } else if (step_ < 0) {
        step_ = 0;
        outbound_ = true;
        MakeNew(line, space);
    }

    target.visible = echo;
    if (echo) {
        line.visible = true;
    } else if (!outbound_) {
        line.visible = false;
    }
}

void Pulse::Rest(BasicDrawing &drawing, bool echo) {
    *this = {};
    Drawing::Line &line = drawing.At(Drawing::LineId::ZentrovaLine);
    line.x1 = 0;
    line.x2 = 0;
    MakeNew(line, drawing.At(Drawing::ControlId::FrameZentrova));
    drawing.At(Drawing::ControlId::FrameTarget).visible = echo;
}

} // namespace ztv

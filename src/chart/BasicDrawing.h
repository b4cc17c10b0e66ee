#pragma once

#include "chart/DrawingElements.h"

#include <span>
#include <vector>

namespace ztv {

// Model of the Basic tab's picture: its lines, shapes and controls by name, without any widget. BasicGraph,
// Pulse and RelayDrag write the coordinates; DrawingChanges finds the areas to repaint.
class BasicDrawing {
public:
    // Builds the drawing as BasicLayout and BasicFields lay it out.
    BasicDrawing();

    // Returns an element, or the member `index` of the array whose first element it is.
    Drawing::Line &At(Drawing::LineId line, int index = 0);
    const Drawing::Line &At(Drawing::LineId line, int index = 0) const;
    Drawing::Control &At(Drawing::ControlId control, int index = 0);
    const Drawing::Control &At(Drawing::ControlId control, int index = 0) const;

    // The array LineHyperbolic: member 0 is the template and never visible, the members from 1 on are the
    // segments of the curve.
    const std::vector<Drawing::Line> &LineHyperbolic() const { return curve_; }
    void LoadCurve(std::span<const Drawing::Point> points); // replaces the present curve
    void UnloadCurve();

    // Whether the measured values are present ones. While they aren't, what shows them is dimmed.
    bool MeasuredIsLive() const { return measuredIsLive_; }
    void MeasuredIsLive(bool live) { measuredIsLive_ = live; }

    // Returns the colour in which an element is painted now.
    Drawing::Colour ColourOf(const Drawing::Line &line) const { return Present(line.colour, line.measured); }
    Drawing::Colour ColourOf(const Drawing::Shape &shape) const {
        return Present(shape.fill, shape.measured);
    }
    Drawing::Colour ColourOf(const Drawing::Control &control) const {
        return Present(control.colour, control.measured);
    }

    // In the order of LineId and ControlId, which is the painting order; the curve is painted last.
    const std::vector<Drawing::Line> &Lines() const { return lines_; }
    const std::vector<Drawing::Control> &Controls() const { return controls_; }
    static std::span<const Drawing::Shape> Shapes();

    // Calls visit(line) for each visible line whose parent is `parent`, except the segments of the curve.
    template <typename Visit>
    void VisitLines(Drawing::ControlId parent, Visit &&visit) const {
        for (const Drawing::Line &line : lines_) {
            if (line.visible && line.parent == parent) {
                visit(line);
            }
        }
    }

private:
    Drawing::Colour Present(Drawing::Colour colour, bool measured) const {
        return measured && !measuredIsLive_ ? Drawing::Colour::Dimmed : colour;
    }

    std::vector<Drawing::Line> lines_;
    std::vector<Drawing::Control> controls_;
    std::vector<Drawing::Line> curve_;
    bool measuredIsLive_ = true;
};

} // namespace ztv

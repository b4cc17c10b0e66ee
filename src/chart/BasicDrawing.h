#pragma once

#include "chart/DrawingElements.h"

#include <span>
#include <vector>

// The picture of the Basic tab: its lines, shapes and controls by their given names, free of any widget.
// Movers write coordinates; DrawingChanges finds the areas to repaint.
class BasicDrawing {
public:
    // As laid out, with the relay markers at their width.
    BasicDrawing();

    // An element, or a member of the array that it begins.
    Drawing::Line &At(Drawing::LineId line, int index = 0);
    const Drawing::Line &At(Drawing::LineId line, int index = 0) const;
    Drawing::Control &At(Drawing::ControlId control, int index = 0);
    const Drawing::Control &At(Drawing::ControlId control, int index = 0) const;

    // LineHyperbolic: 0 is the template, never visible; the segments of the curve are the members from 1 on.
    const std::vector<Drawing::Line> &LineHyperbolic() const { return curve_; }
    void LoadCurve(std::span<const Drawing::Point> points); // instead of the one that is there
    void UnloadCurve();

    // In the order of LineId and ControlId, which is the order of painting; the curve comes last.
    const std::vector<Drawing::Line> &Lines() const { return lines_; }
    const std::vector<Drawing::Control> &Controls() const { return controls_; }
    static std::span<const Drawing::Shape> Shapes();

    // Calls visit(line) for each visible line that stands in `parent` itself, but for the curve's.
    template <typename Visit>
    void VisitLines(Drawing::ControlId parent, Visit &&visit) const {
        for (const Drawing::Line &line : lines_) {
            if (line.visible && line.parent == parent) {
                visit(line);
            }
        }
    }

private:
    std::vector<Drawing::Line> lines_;
    std::vector<Drawing::Control> controls_;
    std::vector<Drawing::Line> curve_;
};

#include "chart/DrawingChanges.h"

#include <algorithm>

namespace ztv {

using namespace Drawing;

namespace {

using Area = DrawingChanges::Area;

Area BoundsOf(const Line &line) {
    const auto [left, right] = std::minmax(line.x1, line.x2);
    const auto [top, bottom] = std::minmax(line.y1, line.y2);
    return {line.parent, left, top, right, bottom};
}

void AddBounds(std::vector<Area> &areas, const Line &line) {
    if (line.visible) {
        areas.push_back(BoundsOf(line));
    }
}

void AddCurve(std::vector<Area> &areas, const std::vector<Line> &curve) {
    std::optional<Area> whole;
    for (const Line &segment : curve) {
        if (!segment.visible) {
            continue;
        }
        const Area bounds = BoundsOf(segment);
        if (!whole) {
            whole = bounds;
        }
        whole->left = std::min(whole->left, bounds.left);
        whole->top = std::min(whole->top, bounds.top);
        whole->right = std::max(whole->right, bounds.right);
        whole->bottom = std::max(whole->bottom, bounds.bottom);
    }
    if (whole) {
        areas.push_back(*whole);
    }
}

} // namespace

DrawingChanges::DrawingChanges(const BasicDrawing &drawing) : drawing_(drawing), shown_(drawing) {}

DrawingChanges::Since DrawingChanges::Take() {
    Since since;
    for (std::size_t i = 0; i < drawing_.Lines().size(); ++i) {
        if (drawing_.Lines()[i] != shown_.Lines()[i]) {
            AddBounds(since.areas, shown_.Lines()[i]);
            AddBounds(since.areas, drawing_.Lines()[i]);
        }
    }
    if (drawing_.LineHyperbolic() != shown_.LineHyperbolic()) {
        AddCurve(since.areas, shown_.LineHyperbolic());
        AddCurve(since.areas, drawing_.LineHyperbolic());
    }
    for (std::size_t i = 0; i < drawing_.Controls().size(); ++i) {
        if (drawing_.Controls()[i] != shown_.Controls()[i]) {
            since.controls.push_back(static_cast<ControlId>(i));
        }
    }
    shown_ = drawing_;
    return since;
}

} // namespace ztv

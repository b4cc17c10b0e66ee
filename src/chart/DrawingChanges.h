#pragma once

#include "chart/BasicDrawing.h"

#include <vector>

namespace ztv {

// Finds the differences in a drawing, so that a tick of the animation repaints only the elements that moved.
// An element that was changed and changed back between two calls of Take() isn't reported.
class DrawingChanges {
public:
    // The bounds of a line before or after its change: in twips of the parent, without the width of the pen.
    struct Area {
        Drawing::ControlId parent;
        float left;
        float top;
        float right;
        float bottom;

        bool operator==(const Area &) const = default;
    };

    struct Since {
        std::vector<Area> areas;
        std::vector<Drawing::ControlId> controls; // those with another place, visibility, enabling or text
    };

    // Counts everything in `drawing` as shown. REQUIRES: `drawing` outlives this.
    explicit DrawingChanges(const BasicDrawing &drawing);

    // Returns the differences since the previous call.
    Since Take();

private:
    const BasicDrawing &drawing_;
    BasicDrawing shown_;
};

} // namespace ztv

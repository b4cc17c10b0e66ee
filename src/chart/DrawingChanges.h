#pragma once

#include "chart/BasicDrawing.h"

// Finds what became different in a drawing, so that a tick of the animation repaints only what moved. What
// was changed and changed back between two questions is no change.
class DrawingChanges {
public:
    // Where lines were and where they are now: twips of the parent, without the width of the pen.
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
        std::vector<Drawing::ControlId> controls; // whose place, visibility, enabling or texts differ
    };

    // Everything in `drawing`, which must outlive this, counts as shown.
    explicit DrawingChanges(const BasicDrawing &drawing);

    // The differences from the last time.
    Since Take();

private:
    const BasicDrawing &drawing_;
    BasicDrawing shown_;
};

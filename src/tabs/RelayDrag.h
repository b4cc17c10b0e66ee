#pragma once

#include "model/ClassZentrova.h"
#include "tabs/BasicDrawing.h"

#include <array>
#include <cstdint>

// The relays' thresholds, set by dragging their markers over the chart. While a marker is dragged a label
// follows it with the value that it stands at; the value is written when it is let go. Markers have the
// numbers of PicRelay.
class RelayDrag {
public:
    // Both must outlive this.
    RelayDrag(ClassZentrova &zentrova, BasicDrawing &drawing) : zentrova_(zentrova), drawing_(drawing) {}

    void MouseDown(int marker, bool leftButton);

    // `x` is where the pointer is, in twips from the marker's left edge. Any movement over the marker counts,
    // pressed or not.
    void MouseMove(int marker, bool leftButtonAlone, float x);

    // The write may turn the event loop.
    void MouseUp(int marker, bool leftButton);

    // The same by the keyboard: a step of so many twips, and letting go. False: it would have passed a limit.
    bool Step(int marker, float twips);
    void LetGo(int marker);

private:
    void ShowThreshold(int marker);
    bool MoveTo(int marker, float left);
    std::int32_t ValueAt(float left) const;
    std::int32_t LeftLimit() const;

    ClassZentrova &zentrova_;
    BasicDrawing &drawing_;
    std::array<bool, 4> mouseDown_{};
};

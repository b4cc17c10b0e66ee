#pragma once

#include "chart/BasicDrawing.h"
#include "model/ClassZentrova.h"

#include <array>
#include <cstdint>
#include <optional>

namespace ztv {

// Sets the relays' thresholds by dragging their markers over the chart. During a drag a label follows the
// marker and shows the value at its place. The release writes that value, unless the marker is back where it
// was pressed. Markers are numbered as PicRelay.
class RelayDrag {
public:
    // REQUIRES: both outlive this.
    RelayDrag(ClassZentrova &zentrova, BasicDrawing &drawing) : zentrova_(zentrova), drawing_(drawing) {}

    // Starts a drag. `x` is the pointer's place in twips from the marker's left edge; the marker keeps that
    // offset from the pointer during the drag.
    void MouseDown(int marker, bool leftButton, float x);

    // Updates the marker's tool tip and continues a drag. Call it for each movement over the marker, pressed
    // or not.
    void MouseMove(int marker, bool leftButtonAlone, float x);

    // Writes the threshold.
    void MouseUp(int marker, bool leftButton);

    // Ends a drag whose MouseUp won't come and moves the marker back to its threshold.
    void Abandon(int marker);

    // The same by keyboard: Step moves by `twips`, StepValue by `raw` units of the value, and LetGo writes.
    // Step and StepValue return false, without moving the marker, if it would pass a limit.
    bool Step(int marker, float twips);
    bool StepValue(int marker, std::int32_t raw);
    void LetGo(int marker);

    // Shows the label also while the keyboard is at a marker that doesn't move.
    void ShowFocused(int marker);

    // Returns false if the label didn't show for that marker.
    bool HideFocused(int marker);

    // Shows the present value and place of the marker that has the keyboard.
    void Follow();

private:
    struct Grip {
        bool pressed = false;
        float pressedAt = 0;
        std::optional<float> home;         // where it was pressed; none if it had been moved already
        bool moved = false;                // but not written yet
        std::optional<std::int32_t> exact; // the value moved to, if its place alone is too coarse
    };

    Grip &GripOf(int marker);
    std::int32_t ValueOf(int marker);
    void ShowThreshold(int marker);
    bool DragTo(int marker, float left);
    bool MoveTo(int marker, float left);
    void Put(int marker, float left, std::optional<std::int32_t> exact);
    void PutHome(int marker);
    void ShowLabel(int marker);
    void MarkHeld(int marker);
    void HideLabelIfIdle();
    float PlaceOf(std::int32_t value) const;
    std::int32_t ValueAt(float left) const;
    std::int32_t LeftLimit() const;

    ClassZentrova &zentrova_;
    BasicDrawing &drawing_;
    std::array<Grip, 4> grips_;
    std::optional<int> focused_;
};

} // namespace ztv

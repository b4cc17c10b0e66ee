#pragma once

#include "chart/BasicDrawing.h"
#include "model/ClassZentrova.h"

#include <array>
#include <cstdint>
#include <optional>

// Sets the relays' thresholds by dragging their markers over the chart. While a marker is dragged a label
// follows it with the value that it stands at; the value is written when it is let go. A marker that stands
// where it was pressed writes nothing. Markers have the numbers of PicRelay.
class RelayDrag {
public:
    // Both must outlive this.
    RelayDrag(ClassZentrova &zentrova, BasicDrawing &drawing) : zentrova_(zentrova), drawing_(drawing) {}

    // `x` is the pointer's place, in twips from the marker's left edge. The marker keeps that offset from the
    // pointer while it is dragged.
    void MouseDown(int marker, bool leftButton, float x);

    // Any movement over the marker counts, pressed or not.
    void MouseMove(int marker, bool leftButtonAlone, float x);

    // The write may turn the event loop.
    void MouseUp(int marker, bool leftButton);

    // Ends a drag whose MouseUp won't come: the marker goes back to its threshold.
    void Abandon(int marker);

    // The same by the keyboard: a step of so many twips, or to the next raw value, and letting go. False: it
    // would have passed a limit.
    bool Step(int marker, float twips);
    bool StepValue(int marker, std::int32_t raw);
    void LetGo(int marker);

private:
    struct Grip {
        bool pressed = false;
        float pressedAt = 0;
        std::optional<float> home;         // where it was pressed; nothing if it was on its way already
        bool moved = false;                // and not written yet
        std::optional<std::int32_t> exact; // the value moved to, where its place alone doesn't tell it
        unsigned moves = 0;                // tells a write that has waited whether it is still the last one
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
};

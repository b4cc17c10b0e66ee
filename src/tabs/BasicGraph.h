#pragma once

#include "model/ClassZentrova.h"
#include "tabs/BasicDrawing.h"
#include "tabs/Pulse.h"

// The Basic tab's chart: lays the drawing out for the output mode, and moves it by the sensor's values.
class BasicGraph {
public:
    static constexpr int TickMilliseconds = 50; // between two calls of UpdateGraph while the tab shows

    // Both must outlive this.
    BasicGraph(ClassZentrova &zentrova, BasicDrawing &drawing);

    // Shows what belongs to the output mode. In hyperbolic mode it writes the near distance, which may turn
    // the event loop, and a roll without a diameter is a Fault (division by zero).
    void ConfigureBasicTab();
    void DrawHyperbolicCurve();
    void RemoveHyperbolicCurve();

    // Moves the markers to the relays' thresholds, but for one that the user holds.
    void PositionRelayMarkers();

    // One step of the animation and of the cursors.
    void UpdateGraph();

private:
    std::int32_t Value(std::int16_t tag) const { return zentrova_.ParamValue(tag); }
    void ShowPartsOf(std::int32_t mode);
    void TurnRails();
    void MoveDistanceCursor();
    void MoveVoltageCursor();
    void MoveTarget();

    ClassZentrova &zentrova_;
    BasicDrawing &drawing_;
    Pulse pulse_;
};

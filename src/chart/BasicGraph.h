#pragma once

#include "chart/BasicDrawing.h"
#include "chart/Pulse.h"
#include "model/ClassZentrova.h"

#include <cstdint>
#include <optional>

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

    // Moves the markers to the relays' thresholds, but for one that the user holds. True: one has moved.
    bool PositionRelayMarkers();

    // Shows what ConfigureBasicTab would, wherever the table's values came from, and writes nothing; a roll
    // without a diameter has no curve here. False: nothing has changed.
    bool FollowTable();

    // One step of the animation and of the cursors.
    void UpdateGraph();

private:
    // The values that the curve is drawn from.
    struct Roll {
        std::int32_t coreDiameter;
        std::int32_t maxDiameter;
        float coreRail;
        float rollRail;

        bool operator==(const Roll &) const = default;
    };

    std::int32_t Value(std::int16_t tag) const { return zentrova_.ParamValue(tag); }
    void ShowPartsOf(std::int32_t mode);
    Roll RollOfTable() const;
    void LoadCurve();
    bool FollowMode();
    bool FollowRoll();
    void TurnRails();
    void MoveDistanceCursor();
    void MoveVoltageCursor();
    void MoveTarget();

    ClassZentrova &zentrova_;
    BasicDrawing &drawing_;
    Pulse pulse_;
    std::optional<std::int32_t> mode_; // whose parts show
    std::optional<Roll> curve_;        // whose curve shows
};

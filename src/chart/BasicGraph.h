#pragma once

#include "chart/BasicDrawing.h"
#include "chart/Pulse.h"
#include "model/ClassZentrova.h"

#include <cstdint>
#include <optional>

namespace ztv {

// The Basic tab's chart: arranges the drawing for the output mode and moves its elements by the sensor's
// values.
class BasicGraph {
public:
    static constexpr int TickMilliseconds = 50; // between two calls of UpdateGraph while the tab shows

    // Both must outlive this.
    BasicGraph(ClassZentrova &zentrova, BasicDrawing &drawing);

    // Shows the elements of the current output mode. In hyperbolic mode, writes the near distance, and throws
    // a Fault (division by zero) for a roll without a diameter.
    void ConfigureBasicTab();
    void DrawHyperbolicCurve();
    void RemoveHyperbolicCurve();

    // Moves the markers to the relays' thresholds, except a marker that the user holds. Returns true if one
    // has moved.
    bool PositionRelayMarkers();

    // Shows the same as ConfigureBasicTab for the table's present values, but writes nothing. A roll without
    // a diameter has no curve here. Returns false if nothing has changed.
    bool FollowTable();

    // Advances the animation by one step, or rests it while the measured values aren't live, and moves the
    // cursors to the present values.
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
    void MovePulse();
    void TurnRails();
    void MoveDistanceCursor();
    void PlaceDiameter();
    void MoveVoltageCursor();
    void MoveTarget();
    void ShowNoEcho(const Drawing::Control &target);

    ClassZentrova &zentrova_;
    BasicDrawing &drawing_;
    Pulse pulse_;
    std::optional<std::int32_t> mode_; // the mode whose elements are shown
    std::optional<Roll> curve_;        // the roll whose curve is shown
};

} // namespace ztv

#include "chart/RelayDrag.h"

#include "chart/BasicLayout.h"
#include "chart/DistanceAxis.h"
#include "model/CheckedAt.h"
#include "model/Global.h"
#include "model/ParamDefines.h"
#include "support/Numbers.h"

#include <algorithm>

namespace ztv {

using enum Drawing::ControlId;
using enum Drawing::LineId;

namespace {

// The limits and the format of the first threshold apply to all four.
constexpr std::int16_t model = ParamDefines::Relay1OnThreshold;

std::int16_t ThresholdOf(int marker) {
    return CheckedAt(BasicLayout::Relays, marker, "PicRelay").threshold;
}

} // namespace

RelayDrag::Grip &RelayDrag::GripOf(int marker) {
    return CheckedAt(grips_, marker, "PicRelay");
}

void RelayDrag::MouseDown(int marker, bool leftButton, float x) {
    Grip &grip = GripOf(marker);
    if (!leftButton || grip.pressed) {
        return;
    }
    grip.pressed = true;
    grip.pressedAt = x;
    grip.home.reset();
    if (!grip.moved) {
        grip.home = drawing_.At(PicRelay, marker).left;
    }
    MarkHeld(marker);
    focused_.reset(); // hides the label at the release
    HideLabelIfIdle();
}

void RelayDrag::MouseMove(int marker, bool leftButtonAlone, float x) {
    ShowThreshold(marker);
    const Grip &grip = GripOf(marker);
    if (grip.pressed && leftButtonAlone) {
        DragTo(marker, drawing_.At(PicRelay, marker).left + x - grip.pressedAt);
    }
}

void RelayDrag::MouseUp(int marker, bool leftButton) {
    if (leftButton) {
        GripOf(marker).pressed = false;
        LetGo(marker);
    }
}

void RelayDrag::Abandon(int marker) {
    GripOf(marker) = {};
    MarkHeld(marker);
    drawing_.At(PicRelay, marker).left = PlaceOf(zentrova_.ParamValue(ThresholdOf(marker)));
    HideLabelIfIdle();
}

bool RelayDrag::Step(int marker, float twips) {
    ShowThreshold(marker);
    return MoveTo(marker, drawing_.At(PicRelay, marker).left + twips);
}

bool RelayDrag::StepValue(int marker, std::int32_t raw) {
    ShowThreshold(marker);
    const std::int32_t value = ValueOf(marker) + raw;
    if (value < zentrova_.ParamMin(model) || value > zentrova_.ParamMax(model)) {
        return false;
    }
    Put(marker, PlaceOf(value), value);
    return true;
}

void RelayDrag::LetGo(int marker) {
    Grip &grip = GripOf(marker);
    if (grip.moved) {
        zentrova_.ParamValue(ThresholdOf(marker), ValueOf(marker));
        grip.moved = false;
    }
    MarkHeld(marker);
    HideLabelIfIdle();
}

void RelayDrag::ShowFocused(int marker) {
    focused_ = marker;
    Follow();
}

bool RelayDrag::HideFocused(int marker) {
    if (focused_ != marker) {
        return false;
    }
    focused_.reset();
    HideLabelIfIdle();
    return true;
}

void RelayDrag::Follow() {
    if (focused_) {
        ShowLabel(*focused_);
    }
}

void RelayDrag::HideLabelIfIdle() {
    drawing_.At(LabelRelayDist).visible =
        std::any_of(grips_.begin(), grips_.end(), [](const Grip &grip) { return grip.moved; });
    Follow();
}

float RelayDrag::PlaceOf(std::int32_t value) const {
    return DistanceAxis::PositionOf(value, zentrova_, DistanceAxis::OfMarkers(drawing_));
}

void RelayDrag::MarkHeld(int marker) {
    const Grip &grip = GripOf(marker);
    drawing_.At(PicRelay, marker).held = grip.pressed || grip.moved;
}

std::int32_t RelayDrag::ValueOf(int marker) {
    const Grip &grip = GripOf(marker);
    if (!grip.moved) {
        return zentrova_.ParamValue(ThresholdOf(marker));
    }
    return grip.exact ? *grip.exact : ValueAt(drawing_.At(PicRelay, marker).left);
}

void RelayDrag::ShowThreshold(int marker) {
    const std::int16_t threshold = ThresholdOf(marker);
    drawing_.At(PicRelay, marker).toolTip = zentrova_.ParamName(threshold) + u'=' +
                                            zentrova_.FormatRaw(zentrova_.ParamValue(threshold), threshold);
}

bool RelayDrag::DragTo(int marker, float left) {
    const Grip &grip = GripOf(marker);
    if (grip.home && ToInt32(left) == ToInt32(*grip.home)) {
        if (grip.moved) {
            PutHome(marker);
        }
        return true;
    }
    return MoveTo(marker, left);
}

// Leaves the marker where it is if the new place is beyond the limits.
bool RelayDrag::MoveTo(int marker, float left) {
    const std::int32_t newLeft = ToInt32(left);
    const float rightLimit = drawing_.At(FrameGraph).width - drawing_.At(PicRelay, marker).width;
    if (newLeft < LeftLimit() || static_cast<float>(newLeft) > rightLimit) {
        return false;
    }
    Put(marker, static_cast<float>(newLeft), std::nullopt);
    return true;
}

void RelayDrag::Put(int marker, float left, std::optional<std::int32_t> exact) {
    Grip &grip = GripOf(marker);
    grip.moved = true;
    grip.exact = exact;
    drawing_.At(PicRelay, marker).left = left;
    MarkHeld(marker);
    ShowLabel(marker);
}

// Restores the threshold itself: converting its place in whole twips back to a value could change it.
void RelayDrag::PutHome(int marker) {
    Grip &grip = GripOf(marker);
    grip.moved = false;
    drawing_.At(PicRelay, marker).left = *grip.home;
    ShowLabel(marker);
}

void RelayDrag::ShowLabel(int marker) {
    const Drawing::Control &graph = drawing_.At(FrameGraph);
    Drawing::Control &label = drawing_.At(LabelRelayDist);
    label.visible = true;
    label.caption =
        zentrova_.ParamName(ThresholdOf(marker)) + u'\n' + zentrova_.FormatRaw(ValueOf(marker), model);
    label.left = graph.left + drawing_.At(PicRelay, marker).left - label.width / 2;
}

std::int32_t RelayDrag::LeftLimit() const {
    const Drawing::Line &plateau = drawing_.At(Line0V);
    return ToInt32(
        Global::InterpolateClipped(zentrova_.ParamMin(model), zentrova_.ParamValue(ParamDefines::MinRange),
                                   zentrova_.ParamValue(ParamDefines::NearDistance), plateau.x1, plateau.x2));
}

// Returns the distance at a marker's place: the inverse of PlaceOf.
std::int32_t RelayDrag::ValueAt(float left) const {
    const Drawing::Line &slope = drawing_.At(LineLinearSlope);
    const Drawing::Line &plateau = drawing_.At(Line10V);
    const std::int32_t nearDistance = zentrova_.ParamValue(ParamDefines::NearDistance);
    const std::int32_t farDistance = zentrova_.ParamValue(ParamDefines::FarDistance);
    if (left < slope.x1) {
        return ToInt32(Global::InterpolateClipped(
            left, 0, slope.x1, zentrova_.ParamValue(ParamDefines::MinRange), nearDistance));
    }
    if (left > slope.x2) {
        return ToInt32(Global::InterpolateClipped(left, plateau.x1, plateau.x2, farDistance,
                                                  zentrova_.ParamValue(ParamDefines::MaxRange)));
    }
    return ToInt32(Global::InterpolateClipped(left, slope.x1, slope.x2, nearDistance, farDistance));
}

} // namespace ztv

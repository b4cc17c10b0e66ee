#include "tabs/RelayDrag.h"

#include "model/Element.h"
#include "model/Global.h"
#include "model/ParamDefines.h"
#include "support/Numbers.h"
#include "tabs/BasicLayout.h"

using enum Drawing::ControlId;
using enum Drawing::LineId;

namespace {

// The minimum and the format of the first threshold stand for all four.
constexpr std::int16_t model = ParamDefines::Relay1OnThreshold;

std::int16_t ThresholdOf(int marker) {
    return Element(BasicLayout::Relays, marker, "PicRelay").threshold;
}

} // namespace

void RelayDrag::MouseDown(int marker, bool leftButton) {
    if (leftButton) {
        Element(mouseDown_, marker, "PicRelay") = true;
    }
}

void RelayDrag::MouseMove(int marker, bool leftButtonAlone, float x) {
    ShowThreshold(marker);
    if (Element(mouseDown_, marker, "PicRelay") && leftButtonAlone) {
        MoveTo(marker, drawing_.At(PicRelay, marker).left + x);
    }
}

void RelayDrag::MouseUp(int marker, bool leftButton) {
    if (leftButton) {
        Element(mouseDown_, marker, "PicRelay") = false;
        LetGo(marker);
    }
}

bool RelayDrag::Step(int marker, float twips) {
    ShowThreshold(marker);
    return MoveTo(marker, drawing_.At(PicRelay, marker).left + twips);
}

void RelayDrag::LetGo(int marker) {
    zentrova_.ParamValue(ThresholdOf(marker), ValueAt(drawing_.At(PicRelay, marker).left));
    drawing_.At(LabelRelayDist).visible = false;
}

void RelayDrag::ShowThreshold(int marker) {
    const std::int16_t threshold = ThresholdOf(marker);
    drawing_.At(PicRelay, marker).toolTip = zentrova_.ParamName(threshold) + u'=' +
                                            zentrova_.FormatRaw(zentrova_.ParamValue(threshold), threshold);
}

// A place beyond the limits is no place: the marker stays where it is.
bool RelayDrag::MoveTo(int marker, float left) {
    const Drawing::Control &graph = drawing_.At(FrameGraph);
    Drawing::Control &strip = drawing_.At(PicRelay, marker);
    const std::int32_t newLeft = ToInt32(left);
    if (newLeft < LeftLimit() || static_cast<float>(newLeft) > graph.width - strip.width) {
        return false;
    }
    strip.left = static_cast<float>(newLeft);
    Drawing::Control &label = drawing_.At(LabelRelayDist);
    label.visible = true;
    label.caption =
        zentrova_.ParamName(ThresholdOf(marker)) + u'\n' + zentrova_.FormatRaw(ValueAt(strip.left), model);
    label.left = graph.left + strip.left - label.width / 2;
    return true;
}

std::int32_t RelayDrag::LeftLimit() const {
    const Drawing::Line &plateau = drawing_.At(Line0V);
    return ToInt32(
        Global::InterpolateClipped(zentrova_.ParamMin(model), zentrova_.ParamValue(ParamDefines::MinRange),
                                   zentrova_.ParamValue(ParamDefines::NearDistance), plateau.x1, plateau.x2));
}

// The distance under a marker: the inverse of how markers are placed.
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

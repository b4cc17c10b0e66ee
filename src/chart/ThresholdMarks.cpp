#include "chart/ThresholdMarks.h"

#include "chart/BasicLayout.h"
#include "model/ParamDefines.h"

#include <algorithm>

namespace ztv {

using enum Drawing::ControlId;

namespace {

// Returns an empty text for a threshold within the range.
QString ReasonOf(const ClassZentrova &zentrova, int marker, std::int16_t threshold) {
    const std::int32_t value = zentrova.ParamValue(threshold);
    const auto reason = [&](const char *side, std::int16_t limit) {
        return QStringLiteral("Relay %1 can't switch here: %2 is %3 %4 %5.")
            .arg(QString::number(BasicLayout::RelayOf(marker)), zentrova.FormatRaw(value, threshold),
                 QString::fromLatin1(side), zentrova.ParamName(limit),
                 zentrova.FormatRaw(zentrova.ParamValue(limit), limit));
    };
    if (value > zentrova.ParamValue(ParamDefines::MaxRange)) {
        return reason("beyond", ParamDefines::MaxRange);
    }
    if (value < zentrova.ParamValue(ParamDefines::MinRange)) {
        return reason("below", ParamDefines::MinRange);
    }
    return {};
}

// Returns true for a marker so close to the chart's edge that its number isn't whole.
bool CutsNumberOff(const Drawing::Control &strip, float chartWidth) {
    const float line = strip.left + strip.width / 2;
    return std::min(line, chartWidth - line) < BasicLayout::HalfNumber;
}

// Puts a mark beside its marker, at the side where the chart has more room.
void Place(Drawing::Control &mark, int marker, const Drawing::Control &strip, float chartWidth) {
    using namespace BasicLayout;
    const bool atTheRight = strip.left > chartWidth / 2;
    mark.left = atTheRight ? strip.left - MarkGap - mark.width : strip.left + strip.width + MarkGap;
    const float row = static_cast<float>(RelayOf(marker) - 1) * mark.height;
    mark.top = IsOn(marker) ? strip.top + row : strip.top + strip.height - mark.height - row;
}

} // namespace

namespace ThresholdMarks {

void Follow(const ClassZentrova &zentrova, BasicDrawing &drawing) {
    const float chartWidth = drawing.At(FrameGraph).width;
    int marker = 0;
    for (const BasicLayout::Relay &relay : BasicLayout::Relays) {
        const Drawing::Control &strip = drawing.At(PicRelay, marker);
        Drawing::Control &mark = drawing.At(MarkRelay, marker);
        mark.toolTip = ReasonOf(zentrova, marker, relay.threshold);
        const bool outside = !mark.toolTip.isEmpty();
        mark.figure = outside ? Drawing::Figure::Warning : Drawing::Figure::None;
        mark.visible = !strip.held && (outside || CutsNumberOff(strip, chartWidth));
        Place(mark, marker, strip, chartWidth);
        ++marker;
    }
}

} // namespace ThresholdMarks

} // namespace ztv

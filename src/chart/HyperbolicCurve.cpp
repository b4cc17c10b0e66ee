#include "chart/HyperbolicCurve.h"

#include "model/Global.h"
#include "model/ParamDefines.h"
#include "model/RollGeometry.h"

namespace ztv {

namespace {

float Inches(const ClassZentrova &zentrova, std::int16_t tag) {
    return static_cast<float>(zentrova.ParamValue(tag) / 100.0);
}

float Between(float x, float x1, float y0, float y1) {
    return static_cast<float>(Global::InterpolateClipped(x, 0, x1, y0, y1));
}

} // namespace

namespace HyperbolicCurve {

std::array<Drawing::Point, 100> Points(const ClassZentrova &zentrova, const Drawing::Line &coreRail,
                                       const Drawing::Line &rollRail) {
    const float core = Inches(zentrova, ParamDefines::CoreDiameter);
    const float step = (Inches(zentrova, ParamDefines::MaxDiameter) - core) / 100.0F;

    std::array<Drawing::Point, 100> points{};
    points.front() = {coreRail.x1, coreRail.y1};
    for (std::size_t i = 1; i <= 98; ++i) {
        const auto number = static_cast<float>(i);
        points[i] = {
            Between(number, 100, coreRail.x1, rollRail.x2),
            Between(RollGeometry::OutputDrop(core, number * step + core), 1, coreRail.y1, rollRail.y1)};
    }
    points.back() = {0, points[98].y}; // a jump, not the next point of the curve
    return points;
}

} // namespace HyperbolicCurve

} // namespace ztv

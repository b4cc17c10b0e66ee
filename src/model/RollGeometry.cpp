#include "model/RollGeometry.h"

#include "model/ParamDefines.h"
#include "support/Fault.h"
#include "support/Numbers.h"

namespace ztv {

namespace RollGeometry {

std::int32_t NearDistance(const ClassZentrova &zentrova) {
    const double span = static_cast<double>(zentrova.ParamValue(ParamDefines::MaxDiameter)) -
                        zentrova.ParamValue(ParamDefines::CoreDiameter);
    return ToInt32(zentrova.ParamValue(ParamDefines::FarDistance) - span / 2.0);
}

bool Exists(const ClassZentrova &zentrova) {
    return zentrova.ParamValue(ParamDefines::CoreDiameter) != 0 ||
           zentrova.ParamValue(ParamDefines::MaxDiameter) != 0;
}

float OutputDrop(float core, float diameter) {
    if (diameter == 0) {
        throw Fault::DivisionByZero(QStringLiteral("the roll has no diameter"));
    }
    return 1 - core / diameter;
}

} // namespace RollGeometry

} // namespace ztv

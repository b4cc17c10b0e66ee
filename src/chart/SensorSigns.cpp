#include "chart/SensorSigns.h"

#include "chart/BasicLayout.h"
#include "model/ParamDefines.h"

namespace ztv {

using enum Drawing::ControlId;

namespace {

constexpr std::int32_t relayIsOn = 1; // any other value is off, as on the Checkout tab

QString StateOf(bool lit, bool live) {
    if (!live) {
        return QStringLiteral("Relay %1: no present value");
    }
    return lit ? QStringLiteral("Relay %1 is on") : QStringLiteral("Relay %1 is off");
}

void ShowRelays(const ClassZentrova &zentrova, BasicDrawing &drawing) {
    int index = 0;
    for (const BasicLayout::Lamp &row : BasicLayout::Lamps) {
        Drawing::Control &lamp = drawing.At(LampRelay, index);
        ++index;
        lamp.lit = zentrova.ParamValue(row.state) == relayIsOn;
        lamp.toolTip = StateOf(lamp.lit, drawing.MeasuredIsLive()).arg(index);
    }
}

} // namespace

namespace SensorSigns {

void Follow(const ClassZentrova &zentrova, BasicDrawing &drawing) {
    ShowRelays(zentrova, drawing);
    drawing.At(LabelEcho).caption = EchoText(zentrova.ParamValue(ParamDefines::EchoStrength));
    drawing.At(LabelDiameter).caption =
        DiameterText(zentrova, zentrova.ParamValue(ParamDefines::ActualDiameter));
}

QString EchoText(std::int32_t strength) {
    return QStringLiteral("Echo\n%1 %").arg(strength);
}

QString DiameterText(const ClassZentrova &zentrova, std::int32_t diameter) {
    return QStringLiteral("Diameter ") + zentrova.FormatRaw(diameter, ParamDefines::ActualDiameter);
}

} // namespace SensorSigns

} // namespace ztv

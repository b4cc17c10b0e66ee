#include "link/FailureText.h"

#include "link/ListText.h"

namespace ztv {

namespace FailureText {

namespace {

constexpr qsizetype mostPorts = 8; // a machine with built-in ports may have dozens

// The request may have reached the sensor: one whose reply was lost or damaged may have been executed.
bool MayBeExecuted(LinkStatus status) {
    return status >= LinkStatus::Timeout && status <= LinkStatus::ReadError;
}

QString WhatTheSensorHolds(const ClassZentrova &zentrova, const SensorValues &sensor, std::int16_t tag,
                           LinkStatus status) {
    const auto value = sensor.Value(tag);
    if (!value || !sensor.IsCurrent()) {
        return QStringLiteral(" The value that the sensor has isn't known.");
    }
    const QString text = MayBeExecuted(status) ? QStringLiteral(" The sensor had %1 when it was last read.")
                                               : QStringLiteral(" The sensor has %1.");
    return text.arg(zentrova.FormatRaw(*value, tag));
}

QString ListOf(const QStringList &ports) {
    if (ports.isEmpty()) {
        return QStringLiteral("There are no serial ports.");
    }
    return QStringLiteral("There are: %1.").arg(ListText(ports, mostPorts));
}

} // namespace

QString WordsOf(LinkStatus status) {
    return status == LinkStatus::AnotherSensor ? QStringLiteral("Another sensor: go offline and online")
                                               : MbaxpErrorDesc(status);
}

QString OfWrite(const ClassZentrova &zentrova, const SensorValues &sensor, std::int16_t tag,
                LinkStatus status) {
    const QString outcome = MayBeExecuted(status) ? QStringLiteral("confirmed") : QStringLiteral("taken");
    const QString text = QStringLiteral("%1 (%2) = %3 was not %4 (%5).")
                             .arg(zentrova.ParamName(tag).trimmed(), QString::number(tag),
                                  zentrova.FormatRaw(zentrova.SentValue(tag), tag), outcome, WordsOf(status));
    return ClassZentrova::IsCommand(tag) ? text : text + WhatTheSensorHolds(zentrova, sensor, tag, status);
}

QString OfDownload(std::int16_t values, LinkStatus status) {
    return QStringLiteral(
               "The %1 values were not confirmed (%2). The values read next are those that the sensor "
               "holds.")
        .arg(QString::number(values), WordsOf(status));
}

QString OfPort(const Port &port) {
    const QString place = port.isThere ? QStringLiteral("Port %1 is %2.")
                                       : QStringLiteral("Port %1 is %2, which isn't connected.");
    return place.arg(QString::number(port.number), port.device) + u' ' + ListOf(port.others);
}

} // namespace FailureText

} // namespace ztv

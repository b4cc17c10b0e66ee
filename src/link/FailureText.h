#pragma once

#include "link/LinkStatus.h"
#include "link/SensorValues.h"
#include "model/ClassZentrova.h"

#include <QString>
#include <QStringList>
#include <cstdint>

namespace ztv {

// The texts beside the boxes of the link's failures: which, where and why.
namespace FailureText {

// Describes a status, also those that only this program has.
QString WordsOf(LinkStatus status);

// Names the parameter of a write that failed, the value, the reason, and the value that the sensor holds.
// Doesn't claim that the sensor refused a value whose reply was lost or damaged: it may have taken it.
// REQUIRES: the table still has the value that failed.
QString OfWrite(const ClassZentrova &zentrova, const SensorValues &sensor, std::int16_t tag,
                LinkStatus status);

// Says how many values a download that failed would have written, and why it failed.
QString OfDownload(std::int16_t values, LinkStatus status);

// A port that couldn't be opened, and those that there are.
struct Port {
    std::int16_t number = 0;
    QString device;
    bool isThere = false;
    QStringList others; // devices, each with its description
};
QString OfPort(const Port &port);

} // namespace FailureText

} // namespace ztv

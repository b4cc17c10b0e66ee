#pragma once

#include "sim/SensorOptions.h"

#include <QString>
#include <QStringList>

namespace sim {

// The request of the command line: a sensor, only a text to print or a firmware file to write, or nothing
// because it was wrong.
struct ParsedOptions {
    SensorOptions options;
    QString text;
    QString firmware; // file name
    QString error;
};

ParsedOptions ParseOptions(const QStringList &arguments);

} // namespace sim

#pragma once

#include "sim/SensorOptions.h"

#include <QString>
#include <QStringList>

namespace sim {

// The parsed command line: the options of a sensor, or a text to print, or a firmware file to write, or an
// error.
struct ParsedOptions {
    SensorOptions options;
    QString text;
    QString firmware; // file name
    QString error;
};

ParsedOptions ParseOptions(const QStringList &arguments);

} // namespace sim

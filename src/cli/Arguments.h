#pragma once

#include "cli/Report.h"

#include <QString>
#include <QStringList>
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

namespace ztv {

// The parsed command line of ztv-ctl. An option that isn't given is empty; the program's settings replace it.
struct Arguments {
    enum class Command { Ports, Info, Get };

    Command command = Command::Get;
    QString port;                           // a device, or the program's number of a port
    std::optional<std::int16_t> baud;       // an index of BaudTable
    std::optional<std::int16_t> parityStop; // an index of ParityStopTable
    std::vector<std::int16_t> addresses;
    int timeoutMs = 0;
    ReportFormat format = ReportFormat::Text;
    bool quiet = false;
    bool raw = false;
    QStringList parameters;
};

// Returns the arguments of the command line; none if it asked for help or the version, which is printed then.
// Throws a Failure (wrong use) that says in a line what would be right.
std::optional<Arguments> ParseArguments(int argc, const char *const *argv);

} // namespace ztv

#pragma once

#include "cli/Report.h"

#include <QString>
#include <QStringList>
#include <cstdint>
#include <optional>
#include <vector>

namespace ztv {

// The parsed command line of ztv-ctl. An option that isn't given is empty; the program's settings replace it.
struct Arguments {
    enum class Command {
        Ports,
        Parameters,
        Search,
        Info,
        Get,
        Set,
        Save,
        Load,
        Diff,
        Store,
        Reinit,
        Watch,
        Flash,
        Trace,
        Simulate
    };

    Command command = Command::Get;

    // Common options.
    QString port;                           // a device, or the program's number of a port
    std::optional<std::int16_t> baud;       // an index of BaudTable
    std::optional<std::int16_t> parityStop; // an index of ParityStopTable
    std::vector<std::int16_t> addresses;
    int timeoutMs = 0;                  // 0: the usual one
    std::optional<ReportFormat> format; // the command's usual one
    bool quiet = false;
    bool trace = false;

    // Options of commands that write.
    bool yes = false;
    bool dryRun = false;
    bool lineSettings = false; // the address, baud rate and parity that a file holds count, too

    bool raw = false;       // numbers without unit and decimal point
    QStringList parameters; // names or numbers; with "=" and a value for Set
    QStringList files;

    // Of Search.
    int from = 1;
    int to = 247;
    bool allSettings = false;

    // Of Watch and Trace.
    std::optional<int> everyMs;
    QString forTime; // as typed; empty: without end

    QStringList simulatorArguments;
};

// Returns the arguments of the command line; none if it asked for help or the version, which is printed then.
// Throws a Failure (wrong use) that says in a line what would be right.
std::optional<Arguments> ParseArguments(int argc, const char *const *argv);

} // namespace ztv

#include "cli/Arguments.h"

#include "cli/AddressList.h"
#include "cli/Failure.h"
#include "model/LineTables.h"
#include "support/ProgramVersion.h"

#include <CLI/CLI.hpp>
#include <cstddef>
#include <cstdio>
#include <string>

namespace ztv {

namespace {

constexpr int longestTimeoutMs = 32'000;

const std::vector<std::pair<std::string, ReportFormat>> formats = {
    {"text", ReportFormat::Text}, {"csv", ReportFormat::Csv}, {"json", ReportFormat::Json}};

// As the user typed it, before it is understood.
struct Typed {
    std::string port;
    std::string baud;
    std::string parity;
    std::string address;
    std::string format = "text";
    std::vector<std::string> parameters;
};

QString Text(const std::string &typed) {
    return QString::fromLocal8Bit(typed.data(), static_cast<qsizetype>(typed.size()));
}

// Returns the index of the row whose text was typed; none if nothing was typed.
template <typename Table>
std::optional<std::int16_t> IndexOf(const std::string &typed, const Table &table, const char *what) {
    if (typed.empty()) {
        return std::nullopt;
    }
    QStringList texts;
    for (std::size_t index = 0; index < table.size(); ++index) {
        texts.append(QString::fromLatin1(table[index].text));
        if (texts.last().compare(Text(typed), Qt::CaseInsensitive) == 0) {
            return static_cast<std::int16_t>(index);
        }
    }
    throw Failure(ExitStatus::WrongUse, QStringLiteral("\"%1\" is no %2; use one of %3")
                                            .arg(Text(typed), QString::fromLatin1(what), texts.join(u", ")));
}

void AddCommonOptions(CLI::App &app, Typed &typed, Arguments &arguments) {
    app.add_option("--port", typed.port, "Serial device, or the program's number of a port");
    app.add_option("--baud", typed.baud, "2400, 4800, 9600, 19200 or 38400");
    app.add_option("--parity", typed.parity, "N1, N2, E1 or O1");
    app.add_option("--address", typed.address,
                   "Sensors on the line: a number, a list (1,5) or a range (1-10)");
    app.add_option("--timeout", arguments.timeoutMs, "Time for an answer, in milliseconds")
        ->check(CLI::Range(1, longestTimeoutMs));
    app.add_option("--format", typed.format, "text, csv or json");
    app.add_flag("--quiet", arguments.quiet, "Print no messages, only results");
}

ReportFormat FormatOf(const std::string &typed) {
    for (const auto &[name, format] : formats) {
        if (name == typed) {
            return format;
        }
    }
    throw Failure(ExitStatus::WrongUse,
                  QStringLiteral("\"%1\" is no format; use text, csv or json").arg(Text(typed)));
}

void Understand(const Typed &typed, Arguments &arguments) {
    arguments.port = Text(typed.port);
    arguments.baud = IndexOf(typed.baud, BaudTable, "baud rate");
    arguments.parityStop = IndexOf(typed.parity, ParityStopTable, "parity");
    if (!typed.address.empty()) {
        arguments.addresses = AddressesOf(Text(typed.address));
    }
    arguments.format = FormatOf(typed.format);
    for (const std::string &parameter : typed.parameters) {
        arguments.parameters.append(Text(parameter));
    }
}

} // namespace

std::optional<Arguments> ParseArguments(int argc, const char *const *argv) {
    Arguments arguments;
    Typed typed;
    CLI::App app("Configures ZTV500-100 Zentrova sensors on a serial line.", "ztv-ctl");
    app.set_version_flag("--version", "ztv-ctl " + ProgramVersion().toStdString());
    app.fallthrough(); // common options may follow the command
    AddCommonOptions(app, typed, arguments);
    app.footer("Examples:\n  ztv-ctl --port /dev/ttyUSB0 get\n  ztv-ctl --address 1-10 --format csv info");

    CLI::App *ports = app.add_subcommand("ports", "Lists the serial devices, those with stable names first");
    ports->footer("Examples:\n  ztv-ctl ports\n  ztv-ctl --format json ports");
    CLI::App *info = app.add_subcommand("info", "Says which sensor answers, and its line setting");
    info->footer("Examples:\n  ztv-ctl info\n  ztv-ctl --address 1-10 --format csv info");
    CLI::App *get = app.add_subcommand("get", "Prints parameters by number or name; without any, all");
    get->add_option("PARAMETER", typed.parameters, "Number, name, or the unique beginning of a name");
    get->add_flag("--raw", arguments.raw, "Print raw numbers, without unit and decimal point");
    get->footer(
        "Examples:\n  ztv-ctl get 28 \"Far Distance\"\n  ztv-ctl --format json get --raw \"actual dist\"");

    try {
        app.parse(argc, argv);
    } catch (const CLI::Success &wanted) { // help or version
        app.exit(wanted);
        return std::nullopt;
    } catch (const CLI::ParseError &error) {
        throw Failure(ExitStatus::WrongUse,
                      QString::fromLocal8Bit(error.what()).simplified() +
                          QStringLiteral("; \"ztv-ctl --help\" lists commands and options"));
    }
    if (app.get_subcommands().empty()) {
        throw Failure(ExitStatus::WrongUse,
                      QStringLiteral("Say what to do: ports, info or get; \"ztv-ctl --help\" lists all"));
    }
    arguments.command = ports->parsed()  ? Arguments::Command::Ports
                        : info->parsed() ? Arguments::Command::Info
                                         : Arguments::Command::Get;
    Understand(typed, arguments);
    return arguments;
}

} // namespace ztv

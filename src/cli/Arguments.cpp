#include "cli/Arguments.h"

#include "cli/AddressList.h"
#include "cli/DidYouMean.h"
#include "cli/Failure.h"
#include "model/LineTables.h"
#include "support/ProgramVersion.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdio>
#include <memory>
#include <string>
#include <utility>

namespace ztv {

namespace {

using Command = Arguments::Command;

constexpr int longestTimeoutMs = 32'000;
constexpr int longestPeriodMs = 24 * 60 * 60 * 1000;
constexpr int highestAddress = 247;

constexpr std::array<std::pair<const char *, ReportFormat>, 3> formats = {
    {{"text", ReportFormat::Text}, {"csv", ReportFormat::Csv}, {"json", ReportFormat::Json}}};

// Leaves one empty line between groups, where the base leaves two.
class HelpFormatter : public CLI::Formatter {
public:
    std::string make_help(const CLI::App *app, std::string name, CLI::AppFormatMode mode) const override {
        return CLI::detail::find_and_replace(Formatter::make_help(app, std::move(name), mode), "\n\n\n",
                                             "\n\n");
    }
};

// As the user typed it, before it is understood.
struct Typed {
    std::string port;
    std::string baud;
    std::string parity;
    std::string address;
    std::string format;
    std::string forTime;
    std::vector<std::string> parameters;
    std::vector<std::string> files;
};

struct Options {
    CLI::App &app;
    Typed &typed;
    Arguments &arguments;
};

// Accepts whole numbers of a range.
CLI::Validator InRange(int least, int most) {
    const auto check = [least, most](const std::string &typed) {
        int number = 0;
        const bool isInRange = CLI::detail::lexical_cast(typed, number) && number >= least && number <= most;
        return isInRange ? std::string()
                         : '"' + typed + "\" is no whole number from " + std::to_string(least) + " to " +
                               std::to_string(most);
    };
    return {check, ""};
}

void AddParameters(const Options &options) {
    options.app
        .add_option("PARAMETER", options.typed.parameters, "Number, name, or the unique beginning of a name")
        ->option_text("...");
}

void AddRaw(const Options &options) {
    options.app.add_flag("--raw", options.arguments.raw, "Print raw numbers, without unit and decimal point");
}

void AddFiles(const Options &options, int least, int most) {
    options.app
        .add_option("FILE", options.typed.files,
                    "Settings file (.ztv); {address} and {serial} stand for the sensor's")
        ->option_text(" ")
        ->expected(least, most)
        ->required();
}

void AddYes(const Options &options) {
    options.app.add_flag("--yes", options.arguments.yes, "Go on without asking");
}

void AddDryRun(const Options &options) {
    options.app.add_flag("--dry-run", options.arguments.dryRun,
                         "Write nothing, but print what would be written");
}

void AddLineSettings(const Options &options) {
    options.app.add_flag("--line-settings", options.arguments.lineSettings,
                         "Include the address, baud rate and parity, which are left out otherwise");
}

void AddPeriod(const Options &options) {
    options.app
        .add_option("--every", options.arguments.everyMs,
                    "Time between two rounds in milliseconds; 0: as fast as the line allows (default: the "
                    "program's, by baud rate)")
        ->option_text("MS")
        ->check(InRange(0, longestPeriodMs));
    options.app
        .add_option("--for", options.typed.forTime,
                    "End after this time, such as 90s, 10m, 8h or 7d (default: at Ctrl+C)")
        ->option_text("TIME");
}

void AddSearch(const Options &options) {
    options.app.add_option("--from", options.arguments.from, "First address, 1 to 247 (default: 1)")
        ->option_text("N")
        ->check(InRange(1, highestAddress));
    options.app.add_option("--to", options.arguments.to, "Last address, 1 to 247 (default: 247)")
        ->option_text("N")
        ->check(InRange(1, highestAddress));
    options.app.add_flag("--all-settings", options.arguments.allSettings,
                         "Search on every baud rate and parity");
}

struct CommandWords {
    Command command = Command::Get;
    const char *name = nullptr;
    const char *summary = nullptr;
    const char *examples = nullptr; // two lines
    void (*add)(const Options &options) = nullptr;
    const char *footer =
        "\"ztv-ctl --help\" lists the options of all commands, such as --port and --address.";
};

constexpr std::array commands = {
    CommandWords{Command::Ports, "ports", "Lists the serial devices, those with stable names first",
                 "  ztv-ctl ports\n  ztv-ctl --format json ports", [](const Options &) {}},
    CommandWords{Command::Search, "search", "Finds the sensors on a line",
                 "  ztv-ctl search --from 1 --to 20\n  ztv-ctl --port /dev/ttyUSB0 search --all-settings",
                 AddSearch},
    CommandWords{Command::Info, "info", "Says which sensor answers, and its line setting",
                 "  ztv-ctl info\n  ztv-ctl --address 1-10 --format csv info", [](const Options &) {}},
    CommandWords{
        Command::Parameters, "parameters", "Lists the parameters that a sensor has, without a sensor",
        "  ztv-ctl parameters\n  ztv-ctl --format csv parameters > parameters.csv", [](const Options &) {}},
    CommandWords{Command::Get, "get", "Prints parameters by number or name; without any, all",
                 "  ztv-ctl get 28 \"Far Distance\"\n  ztv-ctl --format json get --raw \"actual dist\"",
                 [](const Options &options) {
                     AddParameters(options);
                     AddRaw(options);
                 }},
    CommandWords{Command::Set, "set", "Writes parameters, and says what the sensor holds then",
                 "  ztv-ctl set \"Near Distance=12.5\" 29=360\n  ztv-ctl --address 1-10 set --dry-run \"Max "
                 "Range=400\"",
                 [](const Options &options) {
                     options.app
                         .add_option("PARAMETER=VALUE", options.typed.parameters,
                                     "Number or name of a parameter, and its value as it is shown")
                         ->option_text("...")
                         ->required();
                     AddDryRun(options);
                 }},
    CommandWords{Command::Save, "save", "Saves the settings of a sensor to a file",
                 "  ztv-ctl save winder.ztv\n  ztv-ctl --address 1-10 save line-{address}.ztv",
                 [](const Options &options) {
                     AddFiles(options, 1, 1);
                     AddYes(options);
                     AddDryRun(options);
                 }},
    CommandWords{Command::Load, "load", "Writes the settings of a file to a sensor, after asking",
                 "  ztv-ctl load winder.ztv\n  ztv-ctl --address 1-10 load --yes winder.ztv",
                 [](const Options &options) {
                     AddFiles(options, 1, 1);
                     AddYes(options);
                     AddDryRun(options);
                     AddLineSettings(options);
                 }},
    CommandWords{Command::Diff, "diff", "Compares a sensor with a file, or two files",
                 "  ztv-ctl diff winder.ztv\n  ztv-ctl diff before.ztv after.ztv",
                 [](const Options &options) {
                     AddFiles(options, 1, 2);
                     AddLineSettings(options);
                 }},
    CommandWords{Command::Store, "store",
                 "Makes a sensor save its settings, so that it keeps them without power",
                 "  ztv-ctl store\n  ztv-ctl --address 1-10 store",
                 [](const Options &options) { AddDryRun(options); }},
    CommandWords{Command::Reinit, "reinit", "Resets a sensor to its factory settings, after asking",
                 "  ztv-ctl reinit\n  ztv-ctl --address 3 reinit --yes",
                 [](const Options &options) {
                     AddYes(options);
                     AddDryRun(options);
                 }},
    CommandWords{
        Command::Watch, "watch", "Reads parameters again and again, and prints a row each time",
        "  ztv-ctl watch \"actual dist\" --every 1000 --for 8h > distance.csv\n  ztv-ctl --format text watch",
        [](const Options &options) {
            AddParameters(options);
            AddRaw(options);
            AddPeriod(options);
        }},
    CommandWords{Command::Flash, "flash", "Replaces the firmware of a sensor, after asking",
                 "  ztv-ctl flash B70214.hex\n  ztv-ctl --address 3 flash --dry-run B70214.hex",
                 [](const Options &options) {
                     options.app.add_option("FILE", options.typed.files, "Firmware (Intel hex)")
                         ->option_text(" ")
                         ->expected(1)
                         ->required();
                     AddYes(options);
                     AddDryRun(options);
                 }},
    CommandWords{Command::Trace, "trace",
                 "Prints each frame on the line while it reads the sensor again and again",
                 "  ztv-ctl trace --for 10s\n  ztv-ctl --trace get 28",
                 [](const Options &options) {
                     AddParameters(options);
                     AddPeriod(options);
                 }},
    CommandWords{Command::Simulate, "simulate", "Starts a simulated sensor, for a first try without one",
                 "  ztv-ctl simulate\n  ztv-ctl simulate --address 5 --pace",
                 [](const Options &options) { options.app.prefix_command()->fallthrough(false); },
                 "Its options are those of ztv-sim, which \"ztv-sim --help\" lists."},
};

QStringList CommandNames() {
    QStringList names;
    for (const CommandWords &words : commands) {
        names.append(QString::fromLatin1(words.name));
    }
    return names;
}

// Put before a word that CLI11 would split as a list: "[a,b]" is the name of a file.
constexpr char unsplit = '\x1';

QString Text(const std::string &typed) {
    const QString text = QString::fromLocal8Bit(typed.data(), static_cast<qsizetype>(typed.size()));
    return text.startsWith(QLatin1Char(unsplit)) ? text.mid(1) : text;
}

QStringList Texts(const std::vector<std::string> &typed) {
    QStringList texts;
    for (const std::string &text : typed) {
        texts.append(Text(text));
    }
    return texts;
}

Failure WrongUse(const QString &text) {
    return {ExitStatus::WrongUse, text};
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
    throw WrongUse(QStringLiteral("\"%1\" is no %2; use one of %3")
                       .arg(Text(typed), QString::fromLatin1(what), texts.join(u", ")));
}

// A script's empty variable must not stand for the sensor of the program's settings.
std::string WhyEmpty(const std::string &value) {
    return value.empty() ? "the value is empty; leave the option out to use the program's settings"
                         : std::string();
}

void AddCommonOptions(const Options &options) {
    CLI::App &app = options.app;
    Typed &typed = options.typed;
    const auto add = [&app](const char *name, auto &value, const char *argument, const char *description) {
        return app.add_option(name, value, description)->option_text(argument)->group("Line");
    };
    const CLI::Validator isGiven(&WhyEmpty, std::string());
    add("--port", typed.port, "DEVICE", "Serial device, or the program's number of a port")->check(isGiven);
    add("--baud", typed.baud, "RATE", "2400, 4800, 9600, 19200 or 38400")->check(isGiven);
    add("--parity", typed.parity, "PARITY", "N1, N2, E1 or O1")->check(isGiven);
    add("--address", typed.address, "LIST", "Sensors on the line: a number, a list (1,5) or a range (1-10)")
        ->check(isGiven);
    add("--timeout", options.arguments.timeoutMs, "MS",
        "Time for an answer in milliseconds, 1 to 32000 (default: the usual one for the baud rate)")
        ->check(InRange(1, longestTimeoutMs));
    app.add_option("--format", typed.format, "text, csv or json (default: csv for watch, otherwise text)")
        ->option_text("FORMAT")
        ->check(isGiven);
    app.add_flag("--quiet", options.arguments.quiet,
                 "Print results and failures, but no remarks and no progress");
    app.add_flag("--trace", options.arguments.trace, "Print each frame on the line, decoded, with its time");
}

std::optional<ReportFormat> FormatOf(const std::string &typed) {
    if (typed.empty()) {
        return std::nullopt;
    }
    for (const auto &[name, format] : formats) {
        if (name == typed) {
            return format;
        }
    }
    throw WrongUse(QStringLiteral("\"%1\" is no format; use text, csv or json").arg(Text(typed)));
}

void Understand(const Typed &typed, Arguments &arguments) {
    arguments.port = Text(typed.port);
    arguments.baud = IndexOf(typed.baud, BaudTable, "baud rate");
    arguments.parityStop = IndexOf(typed.parity, ParityStopTable, "parity");
    if (!typed.address.empty()) {
        arguments.addresses = AddressesOf(Text(typed.address));
    }
    arguments.format = FormatOf(typed.format);
    arguments.forTime = Text(typed.forTime);
    arguments.parameters = Texts(typed.parameters);
    arguments.files = Texts(typed.files);
}

// Returns the help to read: that of the command, if there is one.
QString HelpOf(const CLI::App &app) {
    const auto given = app.get_subcommands();
    return given.empty() ? QStringLiteral("\"ztv-ctl --help\"")
                         : QStringLiteral("\"ztv-ctl %1 --help\"").arg(Text(given.front()->get_name()));
}

QStringList OptionNames(const CLI::App &app) {
    QStringList names;
    for (const CLI::Option *option : app.get_options()) {
        names.append(Text(option->get_name()));
    }
    return names;
}

Failure NothingNamed(const QString &kind, const QString &word, const QStringList &names,
                     const QString &help) {
    const std::optional<QString> meant = NearestName(word, names);
    return WrongUse(
        meant ? QStringLiteral("There is no %1 \"%2\": did you mean \"%3\"?").arg(kind, word, *meant)
              : QStringLiteral("There is no %1 \"%2\"; %3 lists the %1s").arg(kind, word, help));
}

// Says what would be right in the place of a word that is no command and no option.
Failure NotUnderstood(const CLI::App &app, const QString &word) {
    const auto given = app.get_subcommands();
    const bool isOption = word.startsWith(u'-');
    if (!isOption && !given.empty()) {
        return WrongUse(QStringLiteral("%1 doesn't accept \"%2\"; %3 shows its use")
                            .arg(Text(given.front()->get_name()), word, HelpOf(app)));
    }
    const QStringList names =
        isOption ? OptionNames(app) + (given.empty() ? QStringList() : OptionNames(*given.front()))
                 : CommandNames();
    return NothingNamed(isOption ? QStringLiteral("option") : QStringLiteral("command"), word, names,
                        HelpOf(app));
}

Failure NotParsed(const CLI::App &app, const CLI::ParseError &error) {
    const QString text = QString::fromLocal8Bit(error.what()).simplified();
    if (dynamic_cast<const CLI::ValidationError *>(&error) != nullptr) { // names the option and its values
        return WrongUse(text);
    }
    if (dynamic_cast<const CLI::ArgumentMismatch *>(&error) != nullptr) {
        return WrongUse(QStringLiteral("%1 needs one value; %2 shows its use")
                            .arg(text.section(u':', 0, 0), HelpOf(app)));
    }
    return WrongUse(QStringLiteral("%1; %2 shows its use").arg(text, HelpOf(app)));
}

QString SayWhatToDo() {
    return QStringLiteral("Say what to do: %1; \"ztv-ctl --help\" says more").arg(CommandNames().join(u", "));
}

void RejectUnknownCommand(const std::vector<std::string> &words) {
    const QStringList names = CommandNames();
    if (!words.empty() && !words.front().starts_with('-') && !names.contains(Text(words.front()))) {
        throw NothingNamed(QStringLiteral("command"), Text(words.front()), names,
                           QStringLiteral("\"ztv-ctl --help\""));
    }
}

// Returns the words after the program's name, as CLI11 parses them: the last first. "help get" is "get
// --help".
std::vector<std::string> WordsOf(int argc, const char *const *argv) {
    std::vector<std::string> words(argv + 1, argv + argc);
    if (!words.empty() && words.front() == "help") {
        words.erase(words.begin());
        RejectUnknownCommand(words);
        words.emplace_back("--help");
    }
    for (std::string &word : words) {
        if (word.starts_with('[')) {
            word.insert(word.begin(), unsplit);
        }
    }
    std::ranges::reverse(words);
    return words;
}

} // namespace

std::optional<Arguments> ParseArguments(int argc, const char *const *argv) {
    Arguments arguments;
    Typed typed;
    CLI::App app("Configures ZTV500-100 Zentrova sensors on a serial line.", "ztv-ctl");
    app.set_help_flag("-h,--help", "Print this help, or with a command its help");
    app.set_version_flag("-V,--version", "ztv-ctl " + ProgramVersion().toStdString(), "Print the version");
    const auto formatter = std::make_shared<HelpFormatter>();
    formatter->label("SUBCOMMAND", "COMMAND");
    formatter->label("Positionals", "Arguments");
    app.formatter(formatter);
    app.fallthrough();            // common options may follow the command
    app.require_subcommand(0, 1); // a second one is a word like any other
    AddCommonOptions({.app = app, .typed = typed, .arguments = arguments});
    app.footer(
        "What the options of the line leave out comes from the program's settings.\n\nExamples:\n  ztv-ctl "
        "--port /dev/ttyUSB0 get\n  ztv-ctl --address 1-10 --format csv info");
    for (const CommandWords &words : commands) {
        CLI::App *command = app.add_subcommand(words.name, words.summary);
        command->group("Commands");
        command->set_help_flag("-h,--help", "Print this help");
        command->footer(std::string(words.footer) + "\n\nExamples:\n" + words.examples);
        words.add({.app = *command, .typed = typed, .arguments = arguments});
        command->final_callback([&arguments, &words] { arguments.command = words.command; });
    }

    try {
        app.parse(WordsOf(argc, argv));
    } catch (const CLI::Success &wanted) { // help or version
        app.exit(wanted);
        return std::nullopt;
    } catch (const CLI::ExtrasError &) {
        throw NotUnderstood(app, Text(app.remaining(true).front()));
    } catch (const CLI::ParseError &error) {
        throw NotParsed(app, error);
    }
    if (app.get_subcommands().empty()) {
        throw WrongUse(SayWhatToDo());
    }
    if (arguments.command == Command::Simulate) {
        arguments.simulatorArguments = Texts(app.get_subcommands().front()->remaining());
    }
    Understand(typed, arguments);
    return arguments;
}

} // namespace ztv

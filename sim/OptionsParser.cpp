#include "sim/OptionsParser.h"

#include "sim/LineSettings.h"
#include "sim/ValueText.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include <limits>
#include <optional>

namespace sim {
namespace {

constexpr int longestLatencyMs = 60000;

// Reads values from the parser and keeps the first error.
class Reader {
public:
    explicit Reader(const QCommandLineParser &parser) : parser_(parser) {}

    template <typename Parse, typename Target>
    void Read(const char *name, Parse parse, Target &target) {
        const QString option = QLatin1String(name);
        if (!parser_.isSet(option)) {
            return;
        }
        const auto value = parse(parser_.value(option));
        if (value) {
            target = *value;
        } else if (error_.isEmpty()) {
            error_ = QStringLiteral("--%1 can't be \"%2\"").arg(option, parser_.value(option));
        }
    }

    QString Error() const { return error_; }

private:
    const QCommandLineParser &parser_;
    QString error_;
};

auto Between(int min, int max) {
    return [min, max](const QString &text) { return WholeNumber(text, min, max); };
}

std::optional<QString> NotEmpty(const QString &text) {
    return text.isEmpty() ? std::nullopt : std::optional(text);
}

void AddOptions(QCommandLineParser &parser) {
    const auto text = [](const char *s) { return QString::fromLatin1(s); };
    const auto add = [&](const char *name, const char *what, const char *value) {
        parser.addOption({text(name), text(what), text(value)});
    };
    parser.setApplicationDescription(
        text("A simulated sensor on a pseudo terminal. Prints \"port PATH\", then takes commands on standard "
             "input; \"help\" lists them."));
    parser.addOption({{text("h"), text("help")}, text("Prints this help.")});
    parser.addOption({{text("v"), text("version")}, text("Prints the version.")});
    add("link", "Makes a symbolic link to the terminal.", "path");
    add("presets", "The presets database; Presets.fil in the program's folder by default.", "file");
    add("address", "The sensor's address, 1 to 247.", "n");
    add("baud", "2400, 4800, 9600, 19200 or 38400.", "rate");
    add("parity", "N1, N2, E1 or O1.", "code");
    add("addressing", "Parameter N is register N (0) or register N - 1 (1).", "mode");
    parser.addOption({text("pace"), text("Bytes take the time that they would on a wire.")});
    parser.addOption({text("echo"), text("The adapter gives back each byte that is sent through it.")});
    add("latency", "Waits before every reply.", "ms");
    add("drop", "The probability (0 to 1) that a reply is lost.", "p");
    add("corrupt", "The probability (0 to 1) that a reply is damaged.", "p");
    add("exception", "Answers everything with this exception; 0 is off.", "code");
    parser.addOption({text("boot"), text("Starts in the boot loader.")});
    add("flash", "Keeps the program flash in a raw file of 49152 bytes, written at the end.", "file");
    add("make-firmware",
        "Writes a firmware image (INHEX32) to try an upgrade with, and ends. Not for a real sensor.", "file");
    add("seed", "Chooses the movement of the target and the faults.", "n");
    add("log", "Writes the frames to a file, - for standard error.", "file");
}

} // namespace

ParsedOptions ParseOptions(const QStringList &arguments) {
    QCommandLineParser parser;
    AddOptions(parser);
    ParsedOptions parsed;
    if (!parser.parse(arguments)) {
        parsed.error = parser.errorText();
        return parsed;
    }
    if (!parser.positionalArguments().isEmpty()) {
        parsed.error = QStringLiteral("unexpected \"%1\"").arg(parser.positionalArguments().constFirst());
        return parsed;
    }
    if (parser.isSet(QStringLiteral("help"))) {
        parsed.text = parser.helpText();
        return parsed;
    }
    if (parser.isSet(QStringLiteral("version"))) {
        parsed.text = QStringLiteral("ztv-sim %1\n").arg(QCoreApplication::applicationVersion());
        return parsed;
    }

    SensorOptions &options = parsed.options;
    options.presets = QCoreApplication::applicationDirPath() + QStringLiteral("/Presets.fil");
    options.boot = parser.isSet(QStringLiteral("boot"));
    options.faults.pace = parser.isSet(QStringLiteral("pace"));
    options.faults.echo = parser.isSet(QStringLiteral("echo"));
    Reader reader(parser);
    reader.Read("link", NotEmpty, options.link);
    reader.Read("presets", NotEmpty, options.presets);
    reader.Read("log", NotEmpty, options.log);
    reader.Read("flash", NotEmpty, options.flash);
    reader.Read("make-firmware", NotEmpty, parsed.firmware);
    reader.Read("address", Between(1, 247), options.address);
    reader.Read("baud", BaudFromText, options.baud);
    reader.Read("parity", ParityFromText, options.parity);
    reader.Read("addressing", Between(0, 1), options.addressing);
    reader.Read("latency", Between(0, longestLatencyMs), options.faults.latencyMs);
    reader.Read("drop", Probability, options.faults.drop);
    reader.Read("corrupt", Probability, options.faults.corrupt);
    reader.Read("exception", Between(0, 255), options.faults.exception);
    reader.Read("seed", Between(0, std::numeric_limits<int>::max()), options.seed);
    parsed.error = reader.Error();
    return parsed;
}

} // namespace sim

#include "sim/Commands.h"

#include "sim/BootLoader.h"
#include "sim/DeviceMemory.h"
#include "sim/Parameters.h"
#include "sim/SimulatedSensor.h"
#include "sim/ValueText.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace sim {
namespace {

constexpr int longestLatencyMs = 60000;
constexpr int farthestTarget = 65535;
constexpr int longestDelayMs = 60000;
constexpr int mostExchanges = 1000000;
constexpr int highestAddress = 0xFFFFFF;
constexpr int shownBytes = 16;

constexpr std::pair<const char *, BootFault::Kind> bootFaults[] = {
    {"drop", BootFault::Drop},   {"deaf", BootFault::Deaf}, {"corrupt", BootFault::Corrupt},
    {"delay", BootFault::Delay}, {"cut", BootFault::Cut},   {"unplug", BootFault::Unplug},
};

// Assigns a parsed value; returns an error that quotes the text when there is none.
template <typename Value, typename Target>
QString Assign(const std::optional<Value> &value, Target &target, const QString &text) {
    if (!value) {
        return QStringLiteral("error: bad value %1").arg(text);
    }
    target = *value;
    return {};
}

} // namespace

struct Commands::Command {
    const char *name;
    const char *arguments;
    const char *purpose;
    Handler handler;

    QString Usage() const {
        return QStringLiteral("%1 %2").arg(QLatin1String(name), QLatin1String(arguments)).trimmed();
    }
    // Optional arguments are in brackets.
    bool Takes(qsizetype count) const {
        const qsizetype most = Usage().count(QLatin1Char(' '));
        return count <= most && count >= most - Usage().count(QLatin1Char('['));
    }
};

const Commands::Command Commands::commands[] = {
    {"set", "N V|auto", "parameter N becomes V; a measurement holds V until auto", &Commands::Set},
    {"get", "N", "prints N and its value", &Commands::Get},
    {"target", "INCHES|auto", "holds the target at a distance, or lets it move", &Commands::Target},
    {"mute", "on|off", "hears nothing", &Commands::Mute},
    {"drop", "P", "the probability (0 to 1) that a reply is lost", &Commands::Drop},
    {"corrupt", "P", "the probability (0 to 1) that a reply is damaged", &Commands::Corrupt},
    {"latency", "MS", "waits before every reply", &Commands::Latency},
    {"exception", "CODE", "answers everything with this exception; 0 is off", &Commands::Exception},
    {"pace", "on|off", "bytes take their time on the line", &Commands::Pace},
    {"echo", "on|off", "the adapter gives back each byte that is sent through it", &Commands::Echo},
    {"baud", "RATE", "2400, 4800, 9600, 19200 or 38400", &Commands::Baud},
    {"parity", "CODE", "N1, N2, E1 or O1", &Commands::Parity},
    {"address", "N", "1 to 247", &Commands::Address},
    {"addressing", "0|1", "parameter N is register N or N - 1", &Commands::Addressing},
    {"unplug", "", "the line hangs up", &Commands::Unplug},
    {"plug", "", "the line is there again", &Commands::Plug},
    {"reset", "", "restarts with the stored settings; the boot mark decides what runs", &Commands::Reset},
    {"mark", "[V]", "prints the boot mark, or sets it: 0 has a restart run the application", &Commands::Mark},
    {"peek", "ADDRESS", "prints 16 bytes of flash, ids or configuration from 0x... on", &Commands::Peek},
    {"dump", "FILE", "writes the program flash to a raw file", &Commands::Dump},
    {"bootfault", "N drop|deaf|corrupt|cut|unplug|delay [MS]",
     "fault of the N-th boot exchange: reply lost, request not heard, one bit of the reply damaged, half of "
     "the "
     "reply, hang-up instead of the reply, reply late by MS",
     &Commands::SetBootFault},
    {"bootclear", "", "counts boot exchanges from 1 again and forgets their faults",
     &Commands::ClearBootFaults},
    {"stats", "", "prints the counters", &Commands::Stats},
    {"quit", "", "ends the sensor", &Commands::Quit},
    {"help", "", "prints the commands", &Commands::Help},
};

QString Commands::Run(const QString &line) {
    QStringList words = line.simplified().split(QLatin1Char(' '), Qt::SkipEmptyParts);
    if (words.isEmpty()) {
        return {};
    }
    const QString name = words.takeFirst();
    const auto *command = std::find_if(std::begin(commands), std::end(commands),
                                       [&](const Command &c) { return name == QLatin1String(c.name); });
    if (command == std::end(commands)) {
        return QStringLiteral("error: unknown command %1").arg(name);
    }
    if (!command->Takes(words.size())) {
        return QStringLiteral("error: usage: %1").arg(command->Usage());
    }
    return (this->*command->handler)(words);
}

std::optional<int> Commands::Number(const QString &text) const {
    return WholeNumber(text, 1, sensor_.Count() - 1);
}

QString Commands::SetLine(int number, const std::optional<int> &value, const QString &text) {
    if (!value || !sensor_.SetRegister(number, *value)) {
        return QStringLiteral("error: bad value %1").arg(text);
    }
    return {};
}

QString Commands::Set(const QStringList &arguments) {
    const std::optional<int> number = Number(arguments.at(0));
    if (!number) {
        return QStringLiteral("error: no parameter %1").arg(arguments.at(0));
    }
    const std::optional<int> value = WholeNumber(arguments.at(1), -32768, 65535);
    const bool done = arguments.at(1) == QLatin1String("auto")
                          ? sensor_.Release(*number)
                          : value && sensor_.SetRegister(*number, *value);
    return done ? QString() : QStringLiteral("error: bad value %1").arg(arguments.at(1));
}

QString Commands::Get(const QStringList &arguments) {
    const std::optional<int> number = Number(arguments.at(0));
    if (!number) {
        return QStringLiteral("error: no parameter %1").arg(arguments.at(0));
    }
    return QStringLiteral("%1 %2").arg(*number).arg(sensor_.Register(*number));
}

QString Commands::Mute(const QStringList &arguments) {
    return Assign(OnOff(arguments.at(0)), sensor_.Faults().mute, arguments.at(0));
}

QString Commands::Drop(const QStringList &arguments) {
    return Assign(Probability(arguments.at(0)), sensor_.Faults().drop, arguments.at(0));
}

QString Commands::Corrupt(const QStringList &arguments) {
    return Assign(Probability(arguments.at(0)), sensor_.Faults().corrupt, arguments.at(0));
}

QString Commands::Latency(const QStringList &arguments) {
    return Assign(WholeNumber(arguments.at(0), 0, longestLatencyMs), sensor_.Faults().latencyMs,
                  arguments.at(0));
}

QString Commands::Exception(const QStringList &arguments) {
    return Assign(WholeNumber(arguments.at(0), 0, 255), sensor_.Faults().exception, arguments.at(0));
}

QString Commands::Pace(const QStringList &arguments) {
    return Assign(OnOff(arguments.at(0)), sensor_.Faults().pace, arguments.at(0));
}

QString Commands::Baud(const QStringList &arguments) {
    return SetLine(parameter::BaudRateCode, BaudFromText(arguments.at(0)), arguments.at(0));
}

QString Commands::Parity(const QStringList &arguments) {
    return SetLine(parameter::ParityStopCode, ParityFromText(arguments.at(0)), arguments.at(0));
}

QString Commands::Address(const QStringList &arguments) {
    return SetLine(parameter::NetworkAddress, WholeNumber(arguments.at(0), 1, 247), arguments.at(0));
}

QString Commands::Addressing(const QStringList &arguments) {
    return SetLine(parameter::AddressingMode, WholeNumber(arguments.at(0), 0, 1), arguments.at(0));
}

QString Commands::Target(const QStringList &arguments) {
    if (arguments.at(0) == QLatin1String("auto")) {
        sensor_.HoldTarget({});
        return {};
    }
    const std::optional<int> distance = Hundredths(arguments.at(0), farthestTarget);
    if (!distance) {
        return QStringLiteral("error: bad value %1").arg(arguments.at(0));
    }
    sensor_.HoldTarget(distance);
    return {};
}

QString Commands::Echo(const QStringList &arguments) {
    return Assign(OnOff(arguments.at(0)), sensor_.Faults().echo, arguments.at(0));
}

QString Commands::Unplug(const QStringList &) {
    sensor_.Unplug();
    return {};
}

QString Commands::Plug(const QStringList &) {
    const QString error = sensor_.Plug();
    return error.isEmpty() ? QStringLiteral("port %1").arg(sensor_.Path())
                           : QStringLiteral("error: %1").arg(error);
}

QString Commands::Reset(const QStringList &) {
    sensor_.Reset();
    return {};
}

QString Commands::Mark(const QStringList &arguments) {
    if (arguments.isEmpty()) {
        return QStringLiteral("mark %1").arg(sensor_.Memory().Mark());
    }
    const std::optional<int> mark = WholeNumber(arguments.at(0), 0, 255);
    if (!mark) {
        return QStringLiteral("error: bad value %1").arg(arguments.at(0));
    }
    sensor_.Memory().SetMark(*mark);
    return {};
}

QString Commands::Peek(const QStringList &arguments) {
    const std::optional<int> address = HexNumber(arguments.at(0), highestAddress);
    if (!address) {
        return QStringLiteral("error: bad value %1").arg(arguments.at(0));
    }
    const QByteArray bytes = sensor_.Memory().Read(*address, shownBytes).toHex(' ').toUpper();
    return QStringLiteral("%1 %2")
        .arg(*address, 6, 16, QLatin1Char('0'))
        .toUpper()
        .arg(QString::fromLatin1(bytes));
}

QString Commands::Dump(const QStringList &arguments) {
    const QString error = sensor_.Memory().Save(arguments.at(0));
    return error.isEmpty() ? error : QStringLiteral("error: %1").arg(error);
}

QString Commands::SetBootFault(const QStringList &arguments) {
    const std::optional<int> exchange = WholeNumber(arguments.at(0), 1, mostExchanges);
    if (!exchange) {
        return QStringLiteral("error: bad value %1").arg(arguments.at(0));
    }
    const auto *kind = std::find_if(std::begin(bootFaults), std::end(bootFaults), [&](const auto &fault) {
        return arguments.at(1) == QLatin1String(fault.first);
    });
    if (kind == std::end(bootFaults)) {
        return QStringLiteral("error: bad value %1").arg(arguments.at(1));
    }
    BootFault fault{kind->second, 0};
    if ((fault.kind == BootFault::Delay) != (arguments.size() == 3)) {
        return QStringLiteral("error: delay takes MS, the others don't");
    }
    if (fault.kind == BootFault::Delay) {
        const QString error =
            Assign(WholeNumber(arguments.at(2), 0, longestDelayMs), fault.delayMs, arguments.at(2));
        if (!error.isEmpty()) {
            return error;
        }
    }
    sensor_.Boot().SetFault(*exchange, fault);
    return {};
}

QString Commands::ClearBootFaults(const QStringList &) {
    sensor_.Boot().Clear();
    return {};
}

QString Commands::Stats(const QStringList &) {
    const Statistics &stats = sensor_.Stats();
    return QStringLiteral("requests %1 replies %2 exceptions %3 ignored %4 discarded %5 boot %6 exchanges %7")
        .arg(stats.requests)
        .arg(stats.replies)
        .arg(stats.exceptions)
        .arg(stats.ignored)
        .arg(stats.discarded)
        .arg(sensor_.InBootMode() ? QStringLiteral("on") : QStringLiteral("off"))
        .arg(sensor_.Boot().Exchanges());
}

// Does nothing: the reader of the commands ends the program.
QString Commands::Quit(const QStringList &) {
    return {};
}

QString Commands::Help(const QStringList &) {
    QStringList lines;
    for (const Command &command : commands) {
        lines.append(QStringLiteral("%1: %2").arg(command.Usage(), QLatin1String(command.purpose)));
    }
    return lines.join(QLatin1Char('\n'));
}

} // namespace sim

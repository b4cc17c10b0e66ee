#include "cli/Commands.h"

#include "cli/ParameterNames.h"
#include "cli/SensorLine.h"
#include "link/SerialPorts.h"
#include "link/StoredComm.h"
#include "model/LineTables.h"
#include "model/ParamDefines.h"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <numeric>
#include <utility>

namespace ztv {

namespace {

constexpr qsizetype numberWidth = 3;

// The place of a command: the options, and the program's settings for what they leave out.
CommSettings CommOf(const Arguments &arguments, const SettingsStore &settings) {
    CommSettings comm = ReadCommSettings(settings);
    comm.baud = arguments.baud.value_or(comm.baud);
    comm.parityStop = arguments.parityStop.value_or(comm.parityStop);
    return comm;
}

QString DeviceOf(const Arguments &arguments, const SettingsStore &settings, const CommSettings &comm) {
    if (arguments.port.isEmpty()) {
        return SerialPorts::DeviceOfPort(settings, comm.port);
    }
    bool isNumber = false;
    const int number = arguments.port.toInt(&isNumber);
    if (!isNumber) {
        return arguments.port;
    }
    constexpr int highestPort = 255;
    if (number < 1 || number > highestPort) {
        throw Failure(ExitStatus::WrongUse,
                      QStringLiteral("There is no port %1; they are 1 to %2").arg(number).arg(highestPort));
    }
    return SerialPorts::DeviceOfPort(settings, static_cast<std::int16_t>(number));
}

// One run of a command over the sensors that it names.
class Run {
public:
    Run(const Arguments &arguments, const Surroundings &around)
        : arguments_(arguments),
          around_(around),
          zentrova_(around.programFolder),
          comm_(CommOf(arguments, around.settings)),
          device_(DeviceOf(arguments, around.settings, comm_)),
          addresses_(arguments.addresses.empty() ? std::vector{comm_.address} : arguments.addresses) {}

    ExitStatus Get() {
        const std::vector<std::int16_t> tags = WantedTags();
        qsizetype widest = 0;
        for (const std::int16_t tag : tags) {
            widest = std::max(widest, zentrova_.ParamName(tag).size());
        }
        Report report(arguments_.format,
                      {AddressColumn(),
                       {.key = QStringLiteral("parameter"), .width = numberWidth},
                       {.key = QStringLiteral("name"), .width = widest},
                       {.key = QStringLiteral("value"), .isForText = !arguments_.raw},
                       {.key = QStringLiteral("raw"), .isForText = arguments_.raw}},
                      around_.results);
        return ForEachSensor(report, tags, [&](std::int16_t address, const SensorLine::Values &values, int) {
            for (const std::int16_t tag : tags) {
                const std::int32_t value = values.at(tag);
                report.Add({CellOf(address), CellOf(tag), CellOf(zentrova_.ParamName(tag)),
                            CellOf(zentrova_.FormatRaw(value, tag)), CellOf(value)});
            }
        });
    }

    ExitStatus Info() {
        constexpr std::int16_t modelNumber = 4;
        constexpr std::int16_t modelVariant = 5;
        const std::vector<std::int16_t> tags = {ParamDefines::SerialNumber, modelNumber, modelVariant,
                                                ParamDefines::FirmwareVersion, ParamDefines::BootVersion};
        constexpr qsizetype modelWidth = 10;
        constexpr qsizetype versionWidth = 5;
        constexpr qsizetype lineWidth = 8;
        Report report(arguments_.format,
                      {{.key = QStringLiteral("address")},
                       {.key = QStringLiteral("model"), .width = modelWidth},
                       {.key = QStringLiteral("serial")},
                       {.key = QStringLiteral("firmware")},
                       {.key = QStringLiteral("boot"), .width = versionWidth},
                       {.key = QStringLiteral("line"), .width = lineWidth},
                       {.key = QStringLiteral("addressing")}},
                      around_.results);
        report.NameColumns();
        const QString line =
            QString::fromLatin1(BaudTable.at(static_cast<std::size_t>(comm_.baud)).text) + u' ' +
            QString::fromLatin1(ParityStopTable.at(static_cast<std::size_t>(comm_.parityStop)).text);
        return ForEachSensor(
            report, tags, [&](std::int16_t address, const SensorLine::Values &values, int addressing) {
                const auto text = [&](std::int16_t tag) { return zentrova_.FormatRaw(values.at(tag), tag); };
                report.Add({CellOf(address),
                            CellOf(QStringLiteral("ZTV%1-%2").arg(text(modelNumber), text(modelVariant))),
                            CellOf(values.at(ParamDefines::SerialNumber)),
                            CellOf(text(ParamDefines::FirmwareVersion)),
                            CellOf(text(ParamDefines::BootVersion)), CellOf(line), CellOf(addressing)});
            });
    }

private:
    using PrintSensor =
        std::function<void(std::int16_t address, const SensorLine::Values &values, int addressing)>;

    // A person needs the address only where there are several.
    Report::Column AddressColumn() const {
        return {.key = QStringLiteral("address"), .width = numberWidth, .isForText = addresses_.size() > 1};
    }

    std::vector<std::int16_t> WantedTags() const {
        std::vector<std::int16_t> tags;
        for (const QString &name : arguments_.parameters) {
            tags.push_back(TagOf(name, zentrova_));
        }
        if (tags.empty()) {
            tags.resize(static_cast<std::size_t>(zentrova_.ParamCount()) - 1);
            std::iota(tags.begin(), tags.end(), std::int16_t{1});
        }
        return tags;
    }

    ExitStatus ForEachSensor(Report &report, const std::vector<std::int16_t> &tags,
                             const PrintSensor &print) {
        SensorLine line({.device = device_, .comm = comm_, .responseTimeoutMs = arguments_.timeoutMs},
                        zentrova_);
        ExitStatus status = ExitStatus::Done;
        for (const std::int16_t address : addresses_) {
            try {
                const SensorLine::Values values = line.Read(address, tags);
                print(address, values, line.AddressingMode());
            } catch (const Failure &failure) {
                status = status == ExitStatus::Done ? failure.Status() : status;
                if (!arguments_.quiet) {
                    PrintMessage(around_.messages, failure.Text());
                }
            }
        }
        report.End();
        return status;
    }

    const Arguments &arguments_;
    const Surroundings &around_;
    ClassZentrova zentrova_;
    CommSettings comm_;
    QString device_;
    std::vector<std::int16_t> addresses_;
};

ExitStatus ListPorts(const Arguments &arguments, std::FILE *results) {
    const std::vector<SerialPorts::Described> devices = SerialPorts::Describe();
    qsizetype widest = 0;
    for (const SerialPorts::Described &device : devices) {
        widest = std::max(widest, device.name.size());
    }
    Report report(
        arguments.format,
        {{.key = QStringLiteral("device"), .width = widest}, {.key = QStringLiteral("description")}},
        results);
    for (const SerialPorts::Described &device : devices) {
        report.Add({CellOf(device.name), CellOf(device.description)});
    }
    report.End();
    return ExitStatus::Done;
}

} // namespace

ExitStatus RunCommand(const Arguments &arguments, const Surroundings &around) {
    switch (arguments.command) {
    case Arguments::Command::Ports:
        return ListPorts(arguments, around.results);
    case Arguments::Command::Info:
        return Run(arguments, around).Info();
    case Arguments::Command::Get:
        break;
    }
    return Run(arguments, around).Get();
}

void PrintMessage(std::FILE *messages, const QString &text) {
    std::fputs(("ztv-ctl: " + text.toUtf8() + '\n').constData(), messages);
}

} // namespace ztv

#include "cli/CommandRun.h"

#include "cli/Interruption.h"
#include "cli/ParameterNames.h"
#include "cli/SensorPlace.h"
#include "link/SerialPorts.h"
#include "link/StoredComm.h"

#include <numeric>

namespace ztv {

namespace {

constexpr qsizetype addressWidth = 3;

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

// Says where the device comes from if the arguments don't name it.
QString OriginOfPort(const Arguments &arguments) {
    return arguments.port.isEmpty() ? QStringLiteral(" (from the program's settings)") : QString();
}

// The frames are the results of this command, and otherwise messages.
bool PrintsFrames(const Arguments &arguments) {
    return arguments.command == Arguments::Command::Trace;
}

} // namespace

CommandRun::CommandRun(const Arguments &arguments, const Surroundings &around)
    : arguments_(arguments),
      around_(around),
      console_(around.console, arguments.quiet),
      zentrova_(around.programFolder),
      comm_(CommOf(arguments, around.settings)),
      device_(DeviceOf(arguments, around.settings, comm_)),
      addresses_(arguments.addresses.empty() ? std::vector{comm_.address} : arguments.addresses),
      tracer_(zentrova_,
              PrintsFrames(arguments)
                  ? Tracer::Output{.stream = around.results, .format = Format(), .person = console_}
                  : Tracer::Output{.stream = around.console.messages,
                                   .format = ReportFormat::Text,
                                   .person = console_}) {}

Report::Column CommandRun::AddressColumn() const {
    return {.key = QStringLiteral("address"), .width = addressWidth, .isForText = addresses_.size() > 1};
}

std::vector<std::int16_t> CommandRun::WantedTags(const std::vector<std::int16_t> &otherwise) const {
    std::vector<std::int16_t> tags;
    for (const QString &name : arguments_.parameters) {
        tags.push_back(TagOf(name, zentrova_));
    }
    return tags.empty() ? otherwise : tags;
}

std::vector<std::int16_t> CommandRun::AllTags() const {
    std::vector<std::int16_t> tags(static_cast<std::size_t>(zentrova_.ParamCount()) - 1);
    std::iota(tags.begin(), tags.end(), std::int16_t{1});
    return tags;
}

void CommandRun::Watch(LineTap &tap) {
    if (arguments_.trace || PrintsFrames(arguments_)) {
        tracer_.Watch(tap);
    }
}

Failure CommandRun::PortFailure() const {
    QString why = SerialPorts::PermissionAdvice(device_).simplified();
    if (why.isEmpty()) {
        why = SerialPorts::IsThere(device_)
                  ? QStringLiteral("it is in use by another program, or is no serial device")
                  : QStringLiteral("there is no such device; \"ztv-ctl ports\" lists them");
    }
    return {ExitStatus::NoConnection,
            QStringLiteral("%1%2 can't be opened: %3").arg(device_, OriginOfPort(arguments_), why)};
}

void CommandRun::RemarkOnStoredPort() {
    if (arguments_.port.isEmpty()) {
        console_.Remark(QStringLiteral("No sensor answered on %1%2 at %3; --port, --baud and --parity "
                                       "choose another line, and \"ztv-ctl search\" looks for sensors")
                            .arg(device_, OriginOfPort(arguments_), LineText(comm_)));
    }
}

void CommandRun::RemarkOnUnsavedChange() {
    console_.Remark(QStringLiteral("A sensor keeps new values only until it loses power; \"ztv-ctl store\" "
                                   "saves them"));
}

std::unique_ptr<SensorLine> CommandRun::OpenLine() {
    auto line =
        std::make_unique<SensorLine>(SensorLine::Place{.device = device_,
                                                       .portFailure = [this] { return PortFailure(); },
                                                       .comm = comm_,
                                                       .responseTimeoutMs = arguments_.timeoutMs},
                                     zentrova_);
    Watch(line->Tap());
    return line;
}

ExitStatus CommandRun::ForEachSensor(const SensorWork &work) {
    const std::unique_ptr<SensorLine> line = OpenLine();
    return ForEachSensor(*line, addresses_, work);
}

ExitStatus CommandRun::ForEachSensor(SensorLine &line, const std::vector<std::int16_t> &addresses,
                                     const SensorWork &work) {
    ExitStatus status = ExitStatus::Done;
    for (const std::int16_t address : addresses) {
        try {
            line.SetLine(comm_); // the work for an earlier sensor may have changed it
            work(line, address);
        } catch (const Failure &failure) {
            status = status == ExitStatus::Done ? failure.Status() : status;
            console_.Fail(failure.Text());
        }
        ThrowIfInterrupted();
    }
    if (status == ExitStatus::NoConnection && !line.HasAnswered()) {
        RemarkOnStoredPort();
    }
    return status;
}

} // namespace ztv

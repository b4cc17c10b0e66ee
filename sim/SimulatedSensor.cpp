#include "sim/SimulatedSensor.h"

#include "sim/BootLoader.h"
#include "sim/Commands.h"
#include "sim/DeviceMemory.h"
#include "sim/FrameLog.h"
#include "sim/LocalEcho.h"
#include "sim/ModbusSlave.h"
#include "sim/ParameterTable.h"
#include "sim/Parameters.h"
#include "sim/PseudoTerminal.h"
#include "sim/Registers.h"
#include "sim/RequestAssembler.h"
#include "sim/SensorModel.h"
#include "sim/Transmitter.h"

#include <QElapsedTimer>
#include <QFileInfo>
#include <QSocketNotifier>
#include <QTimer>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cmath>
#include <deque>
#include <random>

#include <termios.h>
#include <unistd.h>

namespace sim {
namespace {

constexpr double silentCharacters = 3.5;
// A pseudo terminal has no line time, but the host may be delayed between two parts of a request.
constexpr double shortestGapMs = 20;
constexpr std::size_t mostRecords = 20000;
constexpr int broadcast = 0;
constexpr int stayInLoader = 0xFF;

template <typename T>
void Record(std::deque<T> &records, T record) {
    if (records.size() == mostRecords) {
        records.pop_front();
    }
    records.push_back(std::move(record));
}

} // namespace

class SimulatedSensor::Private {
public:
    explicit Private(SensorOptions chosen);

    QString Start();
    QString Plug();
    void Unplug();
    void Reset();
    void Measure() { model.Update(*registers, clock.elapsed()); }
    void LineIdle();

    SensorOptions options;
    LineFaults faults;
    ParameterTable table;
    std::optional<Registers> registers;
    SensorModel model;
    LineSettings line;
    bool bootMode = false;
    DeviceMemory memory{0};
    BootLoader loader{memory};
    std::deque<QByteArray> requests;
    std::deque<std::pair<int, int>> writes;
    std::function<void(const QByteArray &)> onRequest;
    Statistics statistics;
    PseudoTerminal terminal;

private:
    void TakeLine() { line = registers->Line(); }
    QString CheckedLine(LineSettings &chosen) const;
    QString LoadMemory();
    void StartProcessor();
    bool Receive();
    void GiveBack(QByteArrayView bytes);
    void ReceiveInBootMode(QByteArrayView bytes);
    void Answer(const BootExchange &exchange);
    void Handle(const QByteArray &request);
    bool Hears(const QByteArray &request) const;
    void Reply(QByteArray reply, qsizetype requestSize, int delayMs = 0);
    void Distort(QByteArray &reply);
    void FlipOneBit(QByteArray &reply);
    bool Chance(double probability);
    void Silence();

    QElapsedTimer clock;
    std::mt19937 random;
    FrameLog log;
    RequestAssembler assembler;
    LocalEcho echo;
    Transmitter transmitter;
    std::unique_ptr<QSocketNotifier> notifier;
    QTimer gap;
    bool restartAfterReply = false;
};

SimulatedSensor::Private::Private(SensorOptions chosen)
    : options(std::move(chosen)),
      faults(options.faults),
      model(options.seed),
      random(options.seed),
      echo([this](const QByteArray &bytes) {
          log.Write(clock.elapsed(), "ec", bytes);
          terminal.Write(bytes);
      }),
      transmitter(
          [this](const QByteArray &bytes) {
              echo.CatchUp();
              log.Write(clock.elapsed(), "tx", bytes);
              terminal.Write(bytes);
          },
          [this] { LineIdle(); }) {
    gap.setSingleShot(true);
    gap.setTimerType(Qt::PreciseTimer);
    QObject::connect(&gap, &QTimer::timeout, &gap, [this] { Silence(); });
}

QString SimulatedSensor::Private::Start() {
    QString error = table.Load(options.presets);
    if (!error.isEmpty()) {
        return error;
    }
    registers.emplace(table);
    LineSettings chosen = registers->Line();
    error = CheckedLine(chosen);
    if (error.isEmpty()) {
        error = log.Open(options.log);
    }
    if (error.isEmpty()) {
        error = LoadMemory();
    }
    if (!error.isEmpty()) {
        return error;
    }
    registers->Configure(chosen);
    TakeLine();
    clock.start();
    StartProcessor();
    return Plug();
}

// Loads the flash file. Creates one that doesn't exist, to check at once that it is writable.
QString SimulatedSensor::Private::LoadMemory() {
    memory = DeviceMemory(registers->Value(parameter::FirmwareVersion));
    if (options.boot) {
        memory.SetMark(stayInLoader);
    }
    if (options.flash.isEmpty()) {
        return {};
    }
    return QFileInfo::exists(options.flash) ? memory.Load(options.flash) : memory.Save(options.flash);
}

void SimulatedSensor::Private::StartProcessor() {
    bootMode = !memory.StartsApplication();
    if (bootMode) {
        loader.Enter(registers->Value(parameter::BootVersion));
    } else if (const std::optional<int> version = memory.ApplicationVersion()) {
        registers->Store(parameter::FirmwareVersion, *version);
    }
}

QString SimulatedSensor::Private::CheckedLine(LineSettings &chosen) const {
    chosen.address = options.address.value_or(chosen.address);
    chosen.baud = options.baud.value_or(chosen.baud);
    chosen.parity = options.parity.value_or(chosen.parity);
    chosen.addressing = options.addressing.value_or(chosen.addressing);
    const std::pair<int, int> values[] = {{parameter::NetworkAddress, chosen.address},
                                          {parameter::BaudRateCode, chosen.baud},
                                          {parameter::ParityStopCode, chosen.parity},
                                          {parameter::AddressingMode, chosen.addressing}};
    for (const auto &[number, value] : values) {
        if (!registers->Holds(number, value)) {
            return QStringLiteral("parameter %1 can't be %2").arg(number).arg(value);
        }
    }
    return {};
}

QString SimulatedSensor::Private::Plug() {
    if (terminal.IsOpen()) {
        return {};
    }
    const QString error = terminal.Open(options.link);
    if (!error.isEmpty()) {
        return error;
    }
    notifier = std::make_unique<QSocketNotifier>(terminal.Descriptor(), QSocketNotifier::Read);
    QObject::connect(notifier.get(), &QSocketNotifier::activated, notifier.get(), [this] { Receive(); });
    return {};
}

void SimulatedSensor::Private::Unplug() {
    if (notifier) {
        // This may be called from the notifier itself.
        notifier->setEnabled(false);
        notifier.release()->deleteLater();
    }
    gap.stop();
    assembler.Discard();
    loader.Discard();
    echo.Clear();
    transmitter.Clear();
    LineIdle();
    terminal.Close();
}

void SimulatedSensor::Private::Reset() {
    gap.stop();
    assembler.Discard();
    transmitter.Clear();
    registers->Restart();
    TakeLine();
    restartAfterReply = false;
    StartProcessor();
}

bool SimulatedSensor::Private::Receive() {
    std::array<char, 4096> buffer{};
    const ssize_t count = read(terminal.Descriptor(), buffer.data(), buffer.size());
    if (count <= 0) {
        // A failed descriptor would wake the event loop again and again.
        if (count == 0 || (errno != EAGAIN && errno != EINTR)) {
            notifier->setEnabled(false);
        }
        return false;
    }
    const QByteArrayView bytes(buffer.data(), count);
    if (faults.echo) {
        GiveBack(bytes);
    }
    if (bootMode) {
        ReceiveInBootMode(bytes);
        return true;
    }
    for (const QByteArray &request : assembler.Append(bytes, line.address)) {
        Handle(request);
    }
    if (assembler.Pending() && !bootMode) {
        const double ms = std::max(shortestGapMs, silentCharacters * line.CharacterMs());
        gap.start(std::chrono::milliseconds(std::lround(std::ceil(ms))));
    } else if (gap.isActive()) {
        gap.stop();
    }
    return true;
}

// Echoes at the host's speed, whatever the sensor's speed is: the adapter makes the echo.
void SimulatedSensor::Private::GiveBack(QByteArrayView bytes) {
    termios settings{};
    const bool paced = faults.pace && terminal.Settings(settings);
    echo.GiveBack(bytes.toByteArray(), paced ? LineSettings::CharacterMsOf(settings) : 0);
}

void SimulatedSensor::Private::ReceiveInBootMode(QByteArrayView bytes) {
    log.Write(clock.elapsed(), "rx", bytes.toByteArray());
    termios settings{};
    if (faults.mute || !terminal.Settings(settings) || !line.SameSpeed(settings)) {
        ++statistics.ignored;
        loader.Discard();
        return;
    }
    for (const BootExchange &exchange : loader.Receive(bytes)) {
        Answer(exchange);
    }
}

void SimulatedSensor::Private::Answer(const BootExchange &exchange) {
    restartAfterReply = exchange.restart;
    QByteArray reply = exchange.answer;
    switch (exchange.fault.kind) {
    case BootFault::Drop:
        reply.clear();
        break;
    case BootFault::Corrupt:
        FlipOneBit(reply);
        break;
    case BootFault::Cut:
        reply.truncate(reply.size() / 2);
        break;
    case BootFault::Unplug:
        Unplug();
        return;
    case BootFault::None:
    case BootFault::Deaf:
    case BootFault::Delay:
        break;
    }
    if (exchange.restart || !reply.isEmpty()) {
        Reply(std::move(reply), exchange.requestSize, exchange.fault.delayMs);
    }
}

// Ends a request at a silence. Bytes that arrived meanwhile still belong to the request.
void SimulatedSensor::Private::Silence() {
    if (Receive()) {
        return;
    }
    const QByteArray rest = assembler.Discard();
    statistics.discarded += static_cast<int>(rest.size());
    log.Write(clock.elapsed(), "??", rest);
}

bool SimulatedSensor::Private::Hears(const QByteArray &request) const {
    const int address = static_cast<quint8>(request.at(0));
    termios settings{};
    return (address == line.address || address == broadcast) && !faults.mute && !bootMode &&
           terminal.Settings(settings) && line.Matches(settings);
}

void SimulatedSensor::Private::Handle(const QByteArray &request) {
    log.Write(clock.elapsed(), "rx", request);
    Record(requests, request);
    if (onRequest) {
        onRequest(request);
    }
    // The callback may have unplugged the sensor.
    if (!terminal.IsOpen() || !Hears(request)) {
        ++statistics.ignored;
        return;
    }
    ++statistics.requests;
    const bool isBroadcast = request.at(0) == broadcast;
    if (faults.exception != 0) {
        if (!isBroadcast) {
            ++statistics.exceptions;
            Reply(ModbusSlave::ExceptionReply(request, faults.exception), request.size());
        }
        return;
    }
    Measure();
    Outcome outcome = ModbusSlave(*registers).Execute(request, line.addressing);
    for (const auto &write : outcome.writes) {
        Record(writes, write);
    }
    if (outcome.refused && !isBroadcast) {
        ++statistics.exceptions;
    }
    Reply(std::move(outcome.reply), request.size());
}

// Sends the reply. New line settings, boot mode and a restart wait until it is sent.
void SimulatedSensor::Private::Reply(QByteArray reply, qsizetype requestSize, int delayMs) {
    if (!reply.isEmpty()) {
        Distort(reply);
    }
    if (!reply.isEmpty()) {
        ++statistics.replies;
    }
    Transmission transmission{std::move(reply), static_cast<double>(faults.latencyMs + delayMs), 0,
                              echo.End()};
    if (faults.pace) {
        // The request took no time to arrive; a wire would have taken some, and Modbus requires a silence
        // after it.
        transmission.characterMs = bootMode ? line.BootCharacterMs() : line.CharacterMs();
        transmission.waitMs += (static_cast<double>(requestSize) + (bootMode ? 0.0 : silentCharacters)) *
                               transmission.characterMs;
    }
    transmitter.Send(std::move(transmission));
}

void SimulatedSensor::Private::Distort(QByteArray &reply) {
    if (Chance(faults.drop)) {
        reply.clear();
    } else if (Chance(faults.corrupt)) {
        FlipOneBit(reply);
    }
}

void SimulatedSensor::Private::FlipOneBit(QByteArray &reply) {
    if (reply.isEmpty()) {
        return;
    }
    const qsizetype index = static_cast<qsizetype>(random() % static_cast<quint32>(reply.size()));
    reply[index] = static_cast<char>(reply.at(index) ^ (1 << random() % 8));
}

bool SimulatedSensor::Private::Chance(double probability) {
    return probability > 0 && static_cast<double>(random()) / (1.0 + std::mt19937::max()) < probability;
}

void SimulatedSensor::Private::LineIdle() {
    if (!registers) {
        return;
    }
    if (restartAfterReply) {
        Reset();
        return;
    }
    TakeLine();
    // The loader continues with the application's line.
    if (registers->TakeBootRequest()) {
        memory.SetMark(stayInLoader);
        StartProcessor();
    }
}

SimulatedSensor::SimulatedSensor(SensorOptions options) : d_(std::make_unique<Private>(std::move(options))) {}

SimulatedSensor::~SimulatedSensor() = default;

QString SimulatedSensor::Start() {
    return d_->Start();
}

QString SimulatedSensor::Execute(const QString &commandLine) {
    return Commands(*this).Run(commandLine);
}

QString SimulatedSensor::Path() const {
    return d_->terminal.Path();
}

void SimulatedSensor::Unplug() {
    d_->Unplug();
}

QString SimulatedSensor::Plug() {
    return d_->Plug();
}

void SimulatedSensor::Reset() {
    d_->Reset();
}

int SimulatedSensor::Count() const {
    return d_->table.Count();
}

int SimulatedSensor::Register(int number) {
    d_->Measure();
    return d_->registers->Value(number);
}

bool SimulatedSensor::SetRegister(int number, int value) {
    Registers &registers = *d_->registers;
    if (!registers.Has(number) || !registers.Holds(number, value)) {
        return false;
    }
    if (SensorModel::Measures(number)) {
        d_->model.Hold(number, value);
        return true;
    }
    registers.Write(number, value);
    d_->LineIdle();
    return true;
}

bool SimulatedSensor::Release(int number) {
    d_->model.Release(number);
    return SensorModel::Measures(number);
}

void SimulatedSensor::HoldTarget(std::optional<int> distance) {
    d_->model.HoldTarget(distance);
}

const LineSettings &SimulatedSensor::Line() const {
    return d_->line;
}

LineFaults &SimulatedSensor::Faults() {
    return d_->faults;
}

bool SimulatedSensor::InBootMode() const {
    return d_->bootMode;
}

BootLoader &SimulatedSensor::Boot() {
    return d_->loader;
}

DeviceMemory &SimulatedSensor::Memory() {
    return d_->memory;
}

QString SimulatedSensor::SaveFlash() const {
    return d_->options.flash.isEmpty() ? QString() : d_->memory.Save(d_->options.flash);
}

std::vector<QByteArray> SimulatedSensor::Requests() const {
    return {d_->requests.begin(), d_->requests.end()};
}

std::vector<std::pair<int, int>> SimulatedSensor::Writes() const {
    return {d_->writes.begin(), d_->writes.end()};
}

void SimulatedSensor::ClearRecords() {
    d_->requests.clear();
    d_->writes.clear();
}

void SimulatedSensor::OnRequest(std::function<void(const QByteArray &)> callback) {
    d_->onRequest = std::move(callback);
}

const Statistics &SimulatedSensor::Stats() const {
    return d_->statistics;
}

} // namespace sim

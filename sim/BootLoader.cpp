#include "sim/BootLoader.h"

namespace sim {
namespace {

constexpr qsizetype headerSize = 5;
constexpr int writeBlock = 8;

enum Command : int {
    Control,
    ReadProgram,
    WriteProgram,
    EraseProgram,
    ReadEeprom,
    WriteEeprom,
};
constexpr int restartProcessor = 0;
constexpr int readVersion = 2;

int ByteAt(const QByteArray &bytes, qsizetype index) {
    return static_cast<quint8>(bytes.at(index));
}

} // namespace

void BootLoader::Enter(int version) {
    version_ = version;
    exchanges_ = 0;
    restarting_ = false;
    reader_.Discard();
}

void BootLoader::Clear() {
    exchanges_ = 0;
    faults_.clear();
}

std::vector<BootExchange> BootLoader::Receive(QByteArrayView bytes) {
    std::vector<BootExchange> exchanges;
    for (const HeardFrame &frame : reader_.Append(bytes)) {
        if (!restarting_) {
            exchanges.push_back(Exchange(frame));
            restarting_ = exchanges.back().restart;
            if (exchanges.back().fault.kind == BootFault::Unplug) {
                break;
            }
        }
    }
    return exchanges;
}

BootExchange BootLoader::Exchange(const HeardFrame &frame) {
    BootExchange exchange;
    exchange.requestSize = frame.size;
    const auto fault = faults_.find(++exchanges_);
    if (fault != faults_.end()) {
        exchange.fault = fault->second;
        faults_.erase(fault);
    }
    if (exchange.fault.kind != BootFault::Deaf) {
        const QByteArray reply = Execute(frame.payload, exchange.restart);
        exchange.answer = reply.isEmpty() ? reply : BootFrame(reply);
    }
    return exchange;
}

// Returns the payload of the answer; empty for anything that isn't exactly a command.
QByteArray BootLoader::Execute(const QByteArray &payload, bool &restart) {
    const int command = ByteAt(payload, 0);
    if (command == Control && payload.size() == 2) {
        if (ByteAt(payload, 1) == readVersion) {
            return payload + static_cast<char>(version_ % 100) + static_cast<char>(version_ / 100);
        }
        restart = ByteAt(payload, 1) == restartProcessor;
        return {};
    }
    if (command == Control || payload.size() < headerSize) {
        return {};
    }
    const int count = ByteAt(payload, 1);
    const int address = ByteAt(payload, 2) | ByteAt(payload, 3) << 8 | ByteAt(payload, 4) << 16;
    const QByteArray data = payload.mid(headerSize);
    const qsizetype expected = command == WriteProgram  ? qsizetype{count} * writeBlock
                               : command == WriteEeprom ? count
                                                        : 0;
    if (data.size() != expected) {
        return {};
    }
    switch (command) {
    case ReadProgram:
        return payload + memory_.Read(address, count);
    case WriteProgram:
        memory_.Write(address, data);
        break;
    case EraseProgram:
        memory_.Erase(address, count);
        break;
    case ReadEeprom:
        return payload + memory_.ReadEeprom(address, count);
    case WriteEeprom:
        memory_.WriteEeprom(address, data);
        break;
    default:
        return {};
    }
    return payload.first(1);
}

} // namespace sim

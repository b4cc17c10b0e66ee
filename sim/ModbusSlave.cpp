#include "sim/ModbusSlave.h"

#include "sim/Crc.h"
#include "sim/Registers.h"

namespace sim {
namespace {

constexpr int illegalFunction = 1;
constexpr int illegalAddress = 2;
constexpr int illegalValue = 3;
constexpr int mostRead = 125;
constexpr int mostWritten = 123;
constexpr int broadcast = 0;

quint8 ByteAt(const QByteArray &bytes, int index) {
    return static_cast<quint8>(bytes.at(index));
}

quint16 WordAt(const QByteArray &bytes, int index) {
    return static_cast<quint16>(ByteAt(bytes, index) << 8 | ByteAt(bytes, index + 1));
}

void AppendWord(QByteArray &bytes, quint16 word) {
    bytes.append(static_cast<char>(word >> 8));
    bytes.append(static_cast<char>(word & 0xFF));
}

} // namespace

Outcome ModbusSlave::Execute(const QByteArray &request, int addressing) {
    Outcome outcome;
    QByteArray body = request.first(2);
    int exception = illegalFunction;
    switch (ByteAt(request, 1)) {
    case 3:
        exception = Read(request, addressing, body);
        break;
    case 6:
        exception = WriteOne(request, addressing, outcome);
        body = request.first(6);
        break;
    case 16:
        exception = WriteMany(request, addressing, outcome);
        body = request.first(6);
        break;
    default:
        break;
    }
    outcome.refused = exception != 0;
    if (ByteAt(request, 0) != broadcast) {
        outcome.reply = outcome.refused ? ExceptionReply(request, exception) : WithCrc(body);
    }
    return outcome;
}

QByteArray ModbusSlave::ExceptionReply(const QByteArray &request, int code) {
    QByteArray reply = request.first(2);
    reply[1] = static_cast<char>(ByteAt(request, 1) | 0x80);
    reply.append(static_cast<char>(code));
    return WithCrc(reply);
}

int ModbusSlave::Read(const QByteArray &request, int addressing, QByteArray &body) const {
    const int first = WordAt(request, 2) + addressing;
    const int quantity = WordAt(request, 4);
    if (quantity < 1 || quantity > mostRead) {
        return illegalValue;
    }
    if (first + quantity > registers_.Count()) {
        return illegalAddress;
    }
    body.reserve(5 + 2 * quantity);
    body.append(static_cast<char>(2 * quantity));
    // There is no parameter 0, but a host reads a table that starts at address 1 from address 0 on.
    for (int number = first; number < first + quantity; ++number) {
        AppendWord(body, number == 0 ? quint16{0} : registers_.Word(number));
    }
    return 0;
}

int ModbusSlave::WriteOne(const QByteArray &request, int addressing, Outcome &outcome) {
    const int number = WordAt(request, 2) + addressing;
    if (!registers_.Has(number)) {
        return illegalAddress;
    }
    const int value = registers_.FromWord(number, WordAt(request, 4));
    outcome.writes.emplace_back(number, value);
    if (!registers_.Writable(number)) {
        return illegalAddress;
    }
    if (!registers_.Accepts(number, value)) {
        return illegalValue;
    }
    registers_.Write(number, value);
    return 0;
}

int ModbusSlave::WriteMany(const QByteArray &request, int addressing, Outcome &outcome) {
    const int first = WordAt(request, 2) + addressing;
    const int quantity = WordAt(request, 4);
    if (quantity < 1 || quantity > mostWritten || ByteAt(request, 6) != 2 * quantity) {
        return illegalValue;
    }
    if (!registers_.Has(first) || !registers_.Has(first + quantity - 1)) {
        return illegalAddress;
    }
    for (int i = 0; i < quantity; ++i) {
        outcome.writes.emplace_back(first + i, registers_.FromWord(first + i, WordAt(request, 7 + 2 * i)));
    }

    // A download contains the whole table: rows that can't be written are skipped, and the values of command
    // rows must not be executed.
    const auto passedOver = [this](int number) {
        return !registers_.Writable(number) || Registers::IsCommand(number);
    };
    for (const auto &[number, value] : outcome.writes) {
        if (!passedOver(number) && !registers_.Accepts(number, value)) {
            return illegalValue;
        }
    }
    for (const auto &[number, value] : outcome.writes) {
        if (!passedOver(number)) {
            registers_.Write(number, value);
        }
    }
    return 0;
}

} // namespace sim

#include "link/ModbusFrame.h"

#include <array>
#include <optional>

namespace ztv {

namespace ModbusFrame {
namespace {

constexpr int framing = 3; // slave before the PDU, CRC after it
constexpr int shortestFrame = 4;
constexpr int exceptionLength = framing + ModbusPdu::ExceptionLength;
constexpr int highestSlave = 247;

constexpr std::array<std::uint16_t, 256> crcTable = [] {
    std::array<std::uint16_t, 256> table{};
    for (unsigned index = 0; index < table.size(); ++index) {
        unsigned crc = index;
        for (int bit = 0; bit < 8; ++bit) {
            crc = (crc & 1U) != 0 ? (crc >> 1) ^ 0xA001U : crc >> 1;
        }
        table[index] = static_cast<std::uint16_t>(crc);
    }
    return table;
}();

std::uint8_t ByteAt(QByteArrayView bytes, qsizetype index) {
    return static_cast<std::uint8_t>(bytes[index]);
}

bool HasGoodCrc(QByteArrayView frame) {
    return Crc(frame) == 0;
}

Verdict Failed(LinkStatus status) {
    return {.kind = Verdict::Kind::Failed, .status = status, .words = {}, .begin = 0, .end = 0};
}

// Fails with the reply still owed: nothing received is the reply or a part of it.
Verdict NotAnswered(LinkStatus status) {
    Verdict verdict = Failed(status);
    verdict.stillOwed = true;
    return verdict;
}

QByteArrayView PduOf(QByteArrayView frame) {
    return frame.sliced(1, frame.size() - framing);
}

Verdict Complete(const Request &request, QByteArrayView frame) {
    Verdict verdict{
        .kind = Verdict::Kind::Complete, .status = LinkStatus::NoError, .words = {}, .begin = 0, .end = 0};
    if (request.function == ReadHoldingRegisters) {
        verdict.words = ModbusPdu::WordsRead(PduOf(frame));
    }
    return verdict;
}

// Judges the bytes as a reply that starts at the first one. Returns nothing when they can't be one, "need
// more" when they may still become one.
std::optional<Verdict> JudgeFront(const Request &request, QByteArrayView bytes, QByteArrayView known) {
    const qsizetype compared = std::min(known.size(), bytes.size());
    if (bytes.first(compared) == known.first(compared)) {
        const int length = ReplyLength(request);
        if (bytes.size() < length) {
            return Verdict{};
        }
        const QByteArrayView frame = bytes.first(length);
        return HasGoodCrc(frame) ? std::optional(Complete(request, frame)) : std::nullopt;
    }
    if (ByteAt(bytes, 0) == request.slave &&
        ByteAt(bytes, 1) == (request.function | ModbusPdu::ExceptionBit)) {
        if (bytes.size() < exceptionLength) {
            return Verdict{};
        }
        const QByteArrayView frame = bytes.first(exceptionLength);
        if (HasGoodCrc(frame)) {
            return Failed(ModbusPdu::ExceptionStatus(PduOf(frame)));
        }
    }
    return std::nullopt;
}

// Returns the length of a reply frame of any slave, derived from its own bytes; 0 where they don't determine
// it.
int LengthByShape(QByteArrayView bytes) {
    if (bytes.size() < shortestFrame || ByteAt(bytes, 0) == 0 || ByteAt(bytes, 0) > highestSlave) {
        return 0;
    }
    const int length = ModbusPdu::LengthByShape(bytes.sliced(1));
    return length == 0 ? 0 : length + framing;
}

bool StartsWithFrame(QByteArrayView bytes) {
    const int length = LengthByShape(bytes);
    return length != 0 && length <= bytes.size() && HasGoodCrc(bytes.first(length));
}

// Returns whether the bytes contain a frame with a good CRC, from any sender and with any content.
bool HoldsAnyFrame(QByteArrayView received) {
    if (received.size() >= shortestFrame && HasGoodCrc(received)) {
        return true;
    }
    for (qsizetype at = 0; at + shortestFrame <= received.size(); ++at) {
        if (StartsWithFrame(received.sliced(at))) {
            return true;
        }
    }
    return false;
}

// Returns the reply or the exception within the bytes; nothing where none begins. While more may come,
// returns "need more" where one may still be incomplete.
std::optional<Verdict> Scan(const Request &request, QByteArrayView received, bool moreMayCome) {
    const QByteArray known = static_cast<char>(request.slave) + ModbusPdu::KnownReply(request);
    for (qsizetype at = 0; at < received.size(); ++at) {
        const QByteArrayView rest = received.sliced(at);
        std::optional<Verdict> verdict = JudgeFront(request, rest, known);
        if (!verdict) {
            // Skips another slave's frame: its data may look like a reply.
            if (ByteAt(rest, 0) != request.slave && StartsWithFrame(rest)) {
                at += LengthByShape(rest) - 1;
            }
            continue;
        }
        if (verdict->kind != Verdict::Kind::NeedMore) {
            verdict->begin = at;
            verdict->end =
                at + (verdict->kind == Verdict::Kind::Complete ? ReplyLength(request) : exceptionLength);
            return verdict;
        }
        // While a reply may be incomplete here, an apparent frame further on is most likely its data.
        if (moreMayCome) {
            return verdict;
        }
    }
    return std::nullopt;
}

} // namespace

std::uint16_t Crc(QByteArrayView bytes) {
    unsigned crc = 0xFFFF;
    for (const char byte : bytes) {
        crc = (crc >> 8) ^ crcTable[(crc ^ static_cast<std::uint8_t>(byte)) & 0xFFU];
    }
    return static_cast<std::uint16_t>(crc);
}

QByteArray Encode(const Request &request) {
    QByteArray frame = static_cast<char>(request.slave) + ModbusPdu::BytesOf(request);
    const std::uint16_t crc = Crc(frame);
    frame.append(static_cast<char>(crc & 0xFF)); // low byte first, unlike all other words
    frame.append(static_cast<char>(crc >> 8));
    return frame;
}

int ReplyLength(const Request &request) {
    return framing + ModbusPdu::LengthOfReply(request);
}

Verdict Judge(const Request &request, QByteArrayView received) {
    return Scan(request, received, true).value_or(Verdict{});
}

Verdict JudgeAtEnd(const Request &request, QByteArrayView received) {
    if (const std::optional<Verdict> verdict = Scan(request, received, false)) {
        return *verdict;
    }
    if (received.empty()) {
        return NotAnswered(LinkStatus::Timeout);
    }
    if (HoldsAnyFrame(received)) {
        return NotAnswered(LinkStatus::UnexpectedResponse);
    }
    if (received.size() >= ReplyLength(request)) {
        return Failed(LinkStatus::CrcError); // most likely the reply, damaged
    }
    const bool hasBegun = Scan(request, received, true).has_value();
    return hasBegun ? Failed(LinkStatus::MissingBytes) : NotAnswered(LinkStatus::MissingBytes);
}

} // namespace ModbusFrame

} // namespace ztv

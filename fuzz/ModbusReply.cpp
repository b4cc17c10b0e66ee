// Fuzzes the judgement of Modbus replies. An input is a request and what the line receives, piece by piece:
// noise, any frames with a good CRC, the good reply or an exception.

#include "fuzz/Harness.h"
#include "link/LinkStatus.h"
#include "link/ModbusFrame.h"
#include "sim/Crc.h"

namespace ztv {

using ModbusFrame::Request;
using ModbusFrame::Verdict;

namespace {

constexpr int exceptionLength = 5;

Request TakeRequest(Fuzz::Input &input) {
    Request request;
    request.slave = static_cast<std::uint8_t>(1 + input.Below(247));
    constexpr std::uint8_t functions[] = {ModbusFrame::ReadHoldingRegisters, ModbusFrame::WriteSingleRegister,
                                          ModbusFrame::WriteMultipleRegisters};
    request.function = functions[input.Below(3)];
    request.address = input.Word();
    const std::uint8_t quantity = input.Byte();
    if (request.function == ModbusFrame::ReadHoldingRegisters) {
        request.quantity = static_cast<std::uint16_t>(1 + quantity % ModbusFrame::MostReadRegisters);
        return request;
    }
    const bool single = request.function == ModbusFrame::WriteSingleRegister;
    request.quantity =
        static_cast<std::uint16_t>(single ? 1 : 1 + quantity % ModbusFrame::MostWrittenRegisters);
    for (int k = 0; k < request.quantity; ++k) {
        request.words.push_back(static_cast<std::int16_t>(input.Word()));
    }
    return request;
}

std::uint8_t At(const QByteArray &bytes, qsizetype index) {
    return static_cast<std::uint8_t>(bytes[index]);
}

int WordAt(const QByteArray &bytes, qsizetype index) {
    return At(bytes, index) << 8 | At(bytes, index + 1);
}

void AddWord(QByteArray &bytes, int word) {
    bytes.append(static_cast<char>(word >> 8)).append(static_cast<char>(word & 0xFF));
}

QByteArray GoodReply(const Request &request, const std::vector<std::int16_t> &words) {
    QByteArray frame;
    frame.append(static_cast<char>(request.slave)).append(static_cast<char>(request.function));
    if (request.function == ModbusFrame::ReadHoldingRegisters) {
        frame.append(static_cast<char>(2 * request.quantity));
        for (const std::int16_t word : words) {
            AddWord(frame, word);
        }
    } else {
        AddWord(frame, request.address);
        AddWord(frame, request.function == ModbusFrame::WriteSingleRegister ? request.words.front()
                                                                            : request.quantity);
    }
    return sim::WithCrc(frame);
}

QByteArray Exception(const Request &request, std::uint8_t code) {
    QByteArray frame;
    frame.append(static_cast<char>(request.slave)).append(static_cast<char>(request.function | 0x80));
    return sim::WithCrc(frame.append(static_cast<char>(code)));
}

std::vector<std::int16_t> TakeWords(Fuzz::Input &input, int count) {
    std::vector<std::int16_t> words(static_cast<std::size_t>(count));
    for (std::int16_t &word : words) {
        word = static_cast<std::int16_t>(input.Word());
    }
    return words;
}

QByteArray TakePiece(Fuzz::Input &input, const Request &request) {
    switch (input.Below(4)) {
    case 0:
        return input.Take(input.Below(16));
    case 1:
        return sim::WithCrc(input.Take(input.Below(32)));
    case 2: {
        const bool read = request.function == ModbusFrame::ReadHoldingRegisters;
        return GoodReply(request, TakeWords(input, read ? request.quantity : 0));
    }
    default:
        return Exception(request, input.Byte());
    }
}

bool Same(const Verdict &one, const Verdict &other) {
    return one.kind == other.kind && one.status == other.status && one.words == other.words &&
           one.end == other.end;
}

// Checks each statement of a verdict against the bytes.
void CheckVerdict(const Request &request, const QByteArray &bytes, const Verdict &verdict) {
    if (verdict.kind == Verdict::Kind::Complete) {
        const int length = ModbusFrame::ReplyLength(request);
        REQUIRE(verdict.end >= length && verdict.end <= bytes.size());
        const QByteArray frame = bytes.mid(verdict.end - length, length);
        REQUIRE(sim::Crc16(frame) == 0);
        REQUIRE(frame == GoodReply(request, verdict.words));
        const bool read = request.function == ModbusFrame::ReadHoldingRegisters;
        REQUIRE(verdict.words.size() == (read ? request.quantity : 0U));
    } else if (verdict.kind == Verdict::Kind::Failed && verdict.end != 0) {
        REQUIRE(verdict.end >= exceptionLength && verdict.end <= bytes.size());
        const QByteArray frame = bytes.mid(verdict.end - exceptionLength, exceptionLength);
        REQUIRE(frame == Exception(request, At(frame, 2)));
        const int code = At(frame, 2);
        const bool known = code >= 1 && code <= LinkStatus::LastException;
        REQUIRE(verdict.status == (known ? code : LinkStatus::UnexpectedResponse));
    } else {
        REQUIRE(verdict.words.empty());
    }
}

void CheckAtEnd(const Request &request, const QByteArray &bytes) {
    const Verdict verdict = ModbusFrame::Judge(request, bytes);
    CheckVerdict(request, bytes, verdict);
    const Verdict last = ModbusFrame::JudgeAtEnd(request, bytes);
    CheckVerdict(request, bytes, last);
    REQUIRE(last.kind != Verdict::Kind::NeedMore);
    REQUIRE(verdict.kind == Verdict::Kind::NeedMore || Same(verdict, last));
    if (last.kind == Verdict::Kind::Failed && last.end == 0) {
        const bool timeout = last.status == LinkStatus::Timeout;
        REQUIRE(timeout == bytes.isEmpty());
        REQUIRE(timeout || last.status == LinkStatus::CrcError ||
                last.status == LinkStatus::UnexpectedResponse || last.status == LinkStatus::MissingBytes);
        REQUIRE(last.status != LinkStatus::MissingBytes || bytes.size() < ModbusFrame::ReplyLength(request));
    }
}

// Checks the encoded request against its fields.
void CheckRequest(const Request &request) {
    const QByteArray frame = ModbusFrame::Encode(request);
    REQUIRE(sim::Crc16(frame) == 0);
    REQUIRE(ModbusFrame::Crc(frame) == 0);
    REQUIRE(At(frame, 0) == request.slave && At(frame, 1) == request.function);
    REQUIRE(WordAt(frame, 2) == request.address);
    qsizetype words = 4;
    if (request.function != ModbusFrame::WriteSingleRegister) {
        REQUIRE(WordAt(frame, 4) == request.quantity);
        words = 6;
    }
    if (request.function == ModbusFrame::WriteMultipleRegisters) {
        REQUIRE(At(frame, 6) == 2 * request.quantity);
        words = 7;
    }
    for (std::size_t k = 0; k < request.words.size(); ++k) {
        REQUIRE(static_cast<std::int16_t>(WordAt(frame, words + 2 * static_cast<qsizetype>(k))) ==
                request.words[k]);
    }
    REQUIRE(frame.size() == words + 2 * static_cast<qsizetype>(request.words.size()) + 2);
}

// A reply after bytes that no frame begins with must be found with its last byte, and not before.
void CheckArrival(const Request &request, const QByteArray &noise, const QByteArray &reply,
                  const Verdict &wanted) {
    QByteArray bytes;
    for (const char byte : noise) {
        bytes.append(static_cast<char>(248 + (byte & 7)));
    }
    const qsizetype front = bytes.size();
    for (const char byte : reply) {
        REQUIRE(ModbusFrame::Judge(request, bytes).kind == Verdict::Kind::NeedMore);
        bytes.append(byte);
    }
    const Verdict verdict = ModbusFrame::Judge(request, bytes);
    REQUIRE(verdict.kind == wanted.kind && verdict.status == wanted.status && verdict.words == wanted.words);
    REQUIRE(verdict.end == front + reply.size());
    REQUIRE(Same(ModbusFrame::JudgeAtEnd(request, bytes), verdict));
    bytes.append(noise); // bytes after the reply change nothing
    REQUIRE(Same(ModbusFrame::Judge(request, bytes), verdict));
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    Fuzz::Input input(data, size);
    const Request request = TakeRequest(input);
    CheckRequest(request);

    const QByteArray noise = input.Take(input.Below(8));
    const bool read = request.function == ModbusFrame::ReadHoldingRegisters;
    const std::uint8_t code = input.Byte();
    const std::vector<std::int16_t> words = TakeWords(input, read ? request.quantity : 0);
    const bool known = code >= 1 && code <= LinkStatus::LastException;
    CheckArrival(request, noise, GoodReply(request, words),
                 {.kind = Verdict::Kind::Complete, .status = 0, .words = words, .end = 0});
    CheckArrival(request, noise, Exception(request, code),
                 {.kind = Verdict::Kind::Failed,
                  .status = known ? std::int16_t{code} : LinkStatus::UnexpectedResponse,
                  .words = {},
                  .end = 0});

    QByteArray received;
    CheckAtEnd(request, received);
    while (!input.AtEnd() && received.size() < 600) {
        received.append(TakePiece(input, request));
        CheckAtEnd(request, received);
        CheckAtEnd(request, received.chopped(std::min<qsizetype>(1, received.size())));
    }
    return 0;
}

} // namespace ztv

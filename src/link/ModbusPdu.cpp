#include "link/ModbusPdu.h"

namespace ztv {

namespace ModbusPdu {
namespace {

constexpr int writeReplyLength = 5;  // function code, address, value or quantity
constexpr int readReplyOverhead = 2; // function code, byte count

std::uint8_t ByteAt(QByteArrayView bytes, qsizetype index) {
    return static_cast<std::uint8_t>(bytes[index]);
}

void AppendWord(QByteArray &bytes, std::uint16_t word) {
    bytes.append(static_cast<char>(word >> 8));
    bytes.append(static_cast<char>(word & 0xFF));
}

} // namespace

QByteArray BytesOf(const Request &request) {
    QByteArray pdu(1, static_cast<char>(request.function));
    AppendWord(pdu, request.address);
    if (request.function == WriteSingleRegister) {
        AppendWord(pdu, static_cast<std::uint16_t>(request.words.front()));
    } else {
        AppendWord(pdu, request.quantity);
    }
    if (request.function == WriteMultipleRegisters) {
        pdu.append(static_cast<char>(2 * request.words.size()));
        for (const std::int16_t word : request.words) {
            AppendWord(pdu, static_cast<std::uint16_t>(word));
        }
    }
    return pdu;
}

int LengthOfReply(const Request &request) {
    return request.function == ReadHoldingRegisters ? readReplyOverhead + 2 * request.quantity
                                                    : writeReplyLength;
}

QByteArray KnownReply(const Request &request) {
    if (request.function != ReadHoldingRegisters) {
        return BytesOf(request).first(writeReplyLength);
    }
    QByteArray known(1, static_cast<char>(request.function));
    return known.append(static_cast<char>(2 * request.quantity));
}

std::vector<std::int16_t> WordsRead(QByteArrayView reply) {
    std::vector<std::int16_t> words;
    words.reserve(static_cast<std::size_t>(reply.size() / 2));
    for (qsizetype at = readReplyOverhead; at + 1 < reply.size(); at += 2) {
        words.push_back(static_cast<std::int16_t>(ByteAt(reply, at) << 8 | ByteAt(reply, at + 1)));
    }
    return words;
}

LinkStatus ExceptionStatus(QByteArrayView reply) {
    const std::uint8_t code = ByteAt(reply, 1);
    const bool isKnown = code >= 1 && code <= CodeOf(LastException);
    return isKnown ? LinkStatus{code} : LinkStatus::UnexpectedResponse;
}

int LengthByShape(QByteArrayView reply) {
    const std::uint8_t function = ByteAt(reply, 0);
    if ((function & ExceptionBit) != 0) {
        return ExceptionLength;
    }
    switch (function) {
    case 1:
    case 2:
    case 3:
    case 4:
        return readReplyOverhead + ByteAt(reply, 1);
    case 5:
    case 6:
    case 15:
    case 16:
        return writeReplyLength;
    default:
        return 0;
    }
}

} // namespace ModbusPdu

} // namespace ztv

#include "link/FrameText.h"

#include "link/ModbusFrame.h"
#include "link/ParameterWord.h"
#include "model/ParamDefines.h"

#include <QStringList>
#include <algorithm>
#include <cstddef>
#include <vector>

namespace ztv {

namespace FrameText {
namespace {

using ModbusPdu::Request;

constexpr qsizetype crcBytes = 2;
constexpr qsizetype shortRequest = 8;
constexpr qsizetype headOfMultiple = 7; // slave, function, address, quantity, byte count

std::uint8_t ByteAt(QByteArrayView bytes, qsizetype index) {
    return static_cast<std::uint8_t>(bytes[index]);
}

std::uint16_t WordAt(QByteArrayView bytes, qsizetype index) {
    return static_cast<std::uint16_t>(ByteAt(bytes, index) << 8 | ByteAt(bytes, index + 1));
}

std::vector<std::int16_t> WordsFrom(QByteArrayView bytes) {
    std::vector<std::int16_t> words;
    for (qsizetype at = 0; at + 1 < bytes.size(); at += 2) {
        words.push_back(static_cast<std::int16_t>(WordAt(bytes, at)));
    }
    return words;
}

bool FitsRegisters(const Request &request, int most) {
    return request.quantity >= 1 && request.quantity <= most && request.address + request.quantity <= 0x10000;
}

// Returns the tag of a register; none if that isn't known or no parameter has it.
std::optional<std::int16_t> TagOfRegister(int number, const Names &names) {
    const int tag = names.addressingMode ? number + *names.addressingMode : 0;
    return tag >= 1 && tag < names.table.ParamCount() ? std::optional(static_cast<std::int16_t>(tag))
                                                      : std::nullopt;
}

QString RegisterText(int number, const Names &names) {
    const std::optional<std::int16_t> tag = TagOfRegister(number, names);
    return tag ? QStringLiteral("%1 (%2)").arg(number).arg(names.table.ParamName(*tag))
               : QString::number(number);
}

// A word whose parameter isn't known is shown without a sign.
QString WordText(int number, std::int16_t word, const Names &names) {
    const std::optional<std::int16_t> tag = TagOfRegister(number, names);
    const std::int32_t value = tag ? ValueOfWord(names.table, *tag, word) : static_cast<std::uint16_t>(word);
    return QStringLiteral("%1 = %2").arg(number).arg(value);
}

QString WordsText(int first, const std::vector<std::int16_t> &words, const Names &names) {
    const qsizetype shown = std::min(names.mostWords, static_cast<qsizetype>(words.size()));
    QStringList texts;
    for (qsizetype index = 0; index < shown; ++index) {
        texts.append(
            WordText(first + static_cast<int>(index), words[static_cast<std::size_t>(index)], names));
    }
    const qsizetype more = static_cast<qsizetype>(words.size()) - shown;
    return texts.join(u", ") + (more > 0 ? QStringLiteral(" and %1 more").arg(more) : QString());
}

QString RegistersText(const Request &request, const Names &names) {
    return QStringLiteral("%1 register%2 from %3")
        .arg(request.quantity)
        .arg(request.quantity == 1 ? QString() : QStringLiteral("s"))
        .arg(RegisterText(request.address, names));
}

QString GoodReplyText(const Request &request, QByteArrayView received, const Names &names) {
    const ModbusFrame::Verdict verdict = ModbusFrame::JudgeAtEnd(request, received);
    if (verdict.kind != ModbusFrame::Verdict::Kind::Complete) {
        return NotUnderstood();
    }
    return request.function == ModbusPdu::ReadHoldingRegisters
               ? WordsText(request.address, verdict.words, names)
               : QStringLiteral("written: ") + WordsText(request.address, request.words, names);
}

} // namespace

std::optional<Request> RequestOf(QByteArrayView frame) {
    if (frame.size() < shortRequest || ModbusFrame::Crc(frame) != 0) {
        return std::nullopt;
    }
    Request request{.slave = ByteAt(frame, 0),
                    .function = ByteAt(frame, 1),
                    .address = WordAt(frame, 2),
                    .quantity = WordAt(frame, 4),
                    .words = {}};
    const bool isShort = frame.size() == shortRequest;
    switch (request.function) {
    case ModbusPdu::ReadHoldingRegisters:
        return isShort && FitsRegisters(request, ModbusPdu::MostReadRegisters) ? std::optional(request)
                                                                               : std::nullopt;
    case ModbusPdu::WriteSingleRegister:
        request.words = {static_cast<std::int16_t>(request.quantity)};
        request.quantity = 1;
        return isShort ? std::optional(request) : std::nullopt;
    case ModbusPdu::WriteMultipleRegisters:
        break;
    default:
        return std::nullopt;
    }
    const qsizetype bytes = 2 * qsizetype{request.quantity};
    if (!FitsRegisters(request, ModbusPdu::MostWrittenRegisters) ||
        frame.size() != headOfMultiple + bytes + crcBytes || ByteAt(frame, headOfMultiple - 1) != bytes) {
        return std::nullopt;
    }
    request.words = WordsFrom(frame.sliced(headOfMultiple, bytes));
    return request;
}

std::optional<int> AddressingModeIn(const Request &request, QByteArrayView received) {
    const int index = ParamDefines::AddressingMark - request.address;
    if (request.function != ModbusPdu::ReadHoldingRegisters || index < 0 || index >= request.quantity) {
        return std::nullopt;
    }
    const ModbusFrame::Verdict verdict = ModbusFrame::JudgeAtEnd(request, received);
    if (verdict.kind != ModbusFrame::Verdict::Kind::Complete) {
        return std::nullopt;
    }
    return verdict.words.at(static_cast<std::size_t>(index)) == ParamDefines::NumberedLikeParameters ? 0 : 1;
}

QString OfRequest(const Request &request, const Names &names) {
    return request.function == ModbusPdu::ReadHoldingRegisters
               ? QStringLiteral("read ") + RegistersText(request, names)
               : QStringLiteral("write %1: %2")
                     .arg(RegistersText(request, names), WordsText(request.address, request.words, names));
}

QString OfReply(const Request &request, QByteArrayView received, LinkStatus status, const Names &names) {
    if (status == LinkStatus::NoError) {
        return GoodReplyText(request, received, names);
    }
    if (status > LinkStatus::NoError && status <= LastException) {
        return QStringLiteral("exception %1 %2").arg(CodeOf(status)).arg(MbaxpErrorDesc(status));
    }
    if (status == LinkStatus::Timeout) {
        return QStringLiteral("no reply");
    }
    return status == LinkStatus::CrcError ? QStringLiteral("CRC error") : MbaxpErrorDesc(status);
}

QString NotUnderstood() {
    return QStringLiteral("not understood");
}

} // namespace FrameText

} // namespace ztv

#pragma once

#include "link/LinkStatus.h"
#include "link/ModbusPdu.h"

#include <QByteArray>
#include <QByteArrayView>
#include <cstdint>
#include <vector>

namespace ztv {

// Modbus RTU frames of the master's side: encodes requests and judges replies. Pure: no line, no time.
namespace ModbusFrame {

using ModbusPdu::MostReadRegisters;
using ModbusPdu::MostWrittenRegisters;
using ModbusPdu::ReadHoldingRegisters;
using ModbusPdu::Request;
using ModbusPdu::WriteMultipleRegisters;
using ModbusPdu::WriteSingleRegister;

// CRC-16 of the Modbus line; over a whole good frame it is 0.
std::uint16_t Crc(QByteArrayView bytes);

// The frame of a request, with its CRC.
QByteArray Encode(const Request &request);

// The length of the good reply to a request, in bytes.
int ReplyLength(const Request &request);

struct Verdict {
    enum class Kind { NeedMore, Complete, Failed };

    Kind kind = Kind::NeedMore;
    LinkStatus status = LinkStatus::NoError; // of a failure
    std::vector<std::int16_t> words;         // of a complete read
    qsizetype begin = 0;                     // of the reply or the exception within the bytes
    qsizetype end = 0;                       // 0 where there is neither
    bool stillOwed = false;                  // of a failure: nothing received is the reply or a part of it
};

// Judges the bytes received so far. The expected length comes from the request alone. Skips bytes before and
// after the reply, and frames that aren't the reply.
Verdict Judge(const Request &request, QByteArrayView received);

// Judges when nothing more will arrive: complete or failed, never "need more".
Verdict JudgeAtEnd(const Request &request, QByteArrayView received);

} // namespace ModbusFrame

} // namespace ztv

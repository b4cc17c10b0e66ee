#pragma once

#include "link/LinkStatus.h"

#include <QByteArray>
#include <QByteArrayView>
#include <cstdint>
#include <vector>

namespace ztv {

// The part of Modbus messages that is the same on every kind of line: function code and data. Pure.
namespace ModbusPdu {

inline constexpr std::uint8_t ReadHoldingRegisters = 3;
inline constexpr std::uint8_t WriteSingleRegister = 6;
inline constexpr std::uint8_t WriteMultipleRegisters = 16;

inline constexpr int MostReadRegisters = 125;
inline constexpr int MostWrittenRegisters = 123;

inline constexpr std::uint8_t ExceptionBit = 0x80; // of the function code of an exception reply
inline constexpr int ExceptionLength = 2;          // function code, exception code

struct Request {
    std::uint8_t slave = 0;
    std::uint8_t function = 0;
    std::uint16_t address = 0;
    std::uint16_t quantity = 0;
    std::vector<std::int16_t> words; // to write: one for function 6, `quantity` for function 16
};

// The request from its function code on.
QByteArray BytesOf(const Request &request);

// The length of the good reply, in bytes.
int LengthOfReply(const Request &request);

// The beginning of the good reply as far as it is known beforehand: function code and byte count of a read,
// the whole reply to a write.
QByteArray KnownReply(const Request &request);

// The words of the good reply to a read.
std::vector<std::int16_t> WordsRead(QByteArrayView reply);

// The status of an exception reply: codes 1 to 7 unchanged, UnexpectedResponse for any other.
LinkStatus ExceptionStatus(QByteArrayView reply);

// Returns the length of a reply, derived from its first bytes; 0 for an unknown function.
// REQUIRES: at least two bytes.
int LengthByShape(QByteArrayView reply);

} // namespace ModbusPdu

} // namespace ztv

#pragma once

#include "link/ModbusFrame.h"

#include <QByteArray>

namespace ztv {

// Bytes from hexadecimal text, blanks allowed.
inline QByteArray Hex(const char *text) {
    return QByteArray::fromHex(text);
}

// The bytes followed by their CRC.
inline QByteArray WithCrc(QByteArray bytes) {
    const std::uint16_t crc = ModbusFrame::Crc(bytes);
    bytes.append(static_cast<char>(crc & 0xFF));
    bytes.append(static_cast<char>(crc >> 8));
    return bytes;
}

inline QByteArray WithCrc(const char *hex) {
    return WithCrc(Hex(hex));
}

} // namespace ztv

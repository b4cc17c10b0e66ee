#pragma once

#include <QByteArrayView>
#include <QtGlobal>

namespace sim {

// Returns the CRC-16 of Modbus. Over a whole good frame it is 0.
quint16 Crc16(QByteArrayView bytes);

// Returns the bytes followed by their checksum, low byte first.
QByteArray WithCrc(QByteArrayView bytes);

} // namespace sim

#pragma once

#include <QByteArrayView>
#include <QtGlobal>

namespace sim {

// The CRC-16 of Modbus. Over a whole good frame it is 0.
quint16 Crc16(QByteArrayView bytes);

// Appends the checksum, low byte first.
QByteArray WithCrc(QByteArrayView bytes);

} // namespace sim

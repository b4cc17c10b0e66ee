#include "sim/Crc.h"

#include <QByteArray>

#include <array>

namespace sim {
namespace {

constexpr std::array<quint16, 256> MakeTable() {
    std::array<quint16, 256> table{};
    for (unsigned i = 0; i < table.size(); ++i) {
        unsigned crc = i;
        for (int bit = 0; bit < 8; ++bit) {
            crc = (crc & 1u) ? (crc >> 1) ^ 0xA001u : crc >> 1;
        }
        table[i] = static_cast<quint16>(crc);
    }
    return table;
}

constexpr auto table = MakeTable();

} // namespace

quint16 Crc16(QByteArrayView bytes) {
    unsigned crc = 0xFFFF;
    for (const char byte : bytes) {
        crc = (crc >> 8) ^ table[(crc ^ static_cast<quint8>(byte)) & 0xFFu];
    }
    return static_cast<quint16>(crc);
}

QByteArray WithCrc(QByteArrayView bytes) {
    QByteArray frame = bytes.toByteArray();
    const quint16 crc = Crc16(bytes);
    frame.append(static_cast<char>(crc & 0xFF));
    frame.append(static_cast<char>(crc >> 8));
    return frame;
}

} // namespace sim

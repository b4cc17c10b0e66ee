#include "tests/soak/LineFault.h"

#include "sim/Crc.h"

#include <set>

namespace ztv {

namespace {

// Whether the bytes contain a frame that a slave could have sent. Damage may leave one by chance, and then
// the host is right to report a frame.
bool ContainsFrame(const QByteArray &bytes) {
    for (qsizetype at = 0; at + 5 <= bytes.size(); ++at) {
        const auto slave = static_cast<quint8>(bytes[at]);
        const auto function = static_cast<quint8>(bytes[at + 1]);
        if (slave == 0 || slave > 247) {
            continue;
        }
        qsizetype length = 8;
        if (function >= 0x80) {
            length = 5;
        } else if (function >= 1 && function <= 4) {
            length = 5 + static_cast<quint8>(bytes[at + 2]);
        }
        if (at + length <= bytes.size() && sim::Crc16(QByteArrayView(bytes).sliced(at, length)) == 0) {
            return true;
        }
    }
    return bytes.size() >= 4 && sim::Crc16(bytes) == 0;
}

} // namespace

QByteArray Damage::WithFlippedBits(QByteArray frame) {
    const QByteArray whole = frame;
    do {
        frame = whole;
        std::set<int> bits;
        const auto count = static_cast<std::size_t>(Between(1, 3));
        while (bits.size() < count) {
            bits.insert(Between(0, static_cast<int>(frame.size()) * 8 - 1));
        }
        for (const int bit : bits) {
            frame[bit / 8] = static_cast<char>(frame[bit / 8] ^ (1 << bit % 8));
        }
    } while (ContainsFrame(frame));
    return frame;
}

QByteArray Damage::CutShort(const QByteArray &frame) {
    QByteArray part;
    do {
        part = frame.first(Between(1, static_cast<int>(frame.size()) - 1));
    } while (ContainsFrame(part));
    return part;
}

QByteArray Damage::Garbage() {
    QByteArray garbage;
    do {
        garbage.resize(Between(1, 12));
        for (char &byte : garbage) {
            byte = static_cast<char>(Between(0, 255));
        }
    } while (ContainsFrame(garbage));
    return garbage;
}

QByteArray Damage::ForeignFrame() {
    QByteArray frame(1, static_cast<char>(Between(2, 247)));
    switch (Between(0, 2)) {
    case 0: { // for a read
        const int words = Between(1, 40);
        frame += char(3);
        frame += static_cast<char>(2 * words);
        for (int byte = 0; byte < 2 * words; ++byte) {
            frame += static_cast<char>(Between(0, 255));
        }
        break;
    }
    case 1: // for a write
        frame += char(6);
        for (int byte = 0; byte < 4; ++byte) {
            frame += static_cast<char>(Between(0, 255));
        }
        break;
    default:
        frame += static_cast<char>(0x83);
        frame += static_cast<char>(Between(1, 7));
        break;
    }
    return sim::WithCrc(frame);
}

} // namespace ztv

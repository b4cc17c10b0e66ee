#include "sim/FirmwareImage.h"

#include <QByteArrayView>

#include <numeric>
#include <random>

namespace sim {
namespace {

constexpr qsizetype versionOffset = 0x20;
constexpr qsizetype codeOffset = 0x100;
constexpr qsizetype recordSize = 16;
// Marks an application of the simulator: a version may be read only where the simulator has written it.
constexpr QByteArrayView signature("ZTVSIM");

char Low(qsizetype word) {
    return static_cast<char>(word & 0xFF);
}

char High(qsizetype word) {
    return static_cast<char>(word >> 8 & 0xFF);
}

QByteArray Record(int type, qsizetype address, const QByteArray &data) {
    QByteArray record;
    record.append(Low(data.size()))
        .append(High(address))
        .append(Low(address))
        .append(static_cast<char>(type));
    record.append(data);
    const int sum = std::accumulate(record.begin(), record.end(), 0);
    return ':' + record.append(Low(-sum)).toHex().toUpper() + "\r\n";
}

} // namespace

QByteArray Noise(unsigned seed, int size) {
    std::mt19937 random(seed);
    QByteArray bytes;
    bytes.reserve(size);
    for (int i = 0; i < size; ++i) {
        bytes.append(static_cast<char>(random() & 0xFF));
    }
    return bytes;
}

QByteArray Application(int version, int size) {
    QByteArray bytes(codeOffset, '\xFF');
    bytes.replace(0, 4, QByteArray::fromHex("80EF04F0")); // goto 0x0900
    bytes.replace(0x08, 2, QByteArray::fromHex("1000"));  // retfie
    bytes.replace(0x18, 2, QByteArray::fromHex("1000"));
    QByteArray identity = signature.toByteArray();
    identity.append(Low(version)).append(High(version));
    bytes.replace(versionOffset, identity.size(), identity);
    return bytes + Noise(static_cast<unsigned>(version), size - static_cast<int>(codeOffset));
}

std::optional<int> VersionOf(const QByteArray &application) {
    const QByteArray identity = application.mid(versionOffset, signature.size() + 2);
    if (identity.size() != signature.size() + 2 || !identity.startsWith(signature)) {
        return {};
    }
    const auto byte = [&](qsizetype index) { return static_cast<quint8>(identity.at(index)); };
    return byte(signature.size()) | byte(signature.size() + 1) << 8;
}

QByteArray HexFile(int address, const QByteArray &bytes) {
    QByteArray file = Record(4, 0, QByteArray(2, '\0'));
    for (qsizetype i = 0; i < bytes.size(); i += recordSize) {
        file += Record(0, address + i, bytes.mid(i, recordSize));
    }
    return file + Record(1, 0, {});
}

} // namespace sim

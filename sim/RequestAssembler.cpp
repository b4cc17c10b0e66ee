#include "sim/RequestAssembler.h"

#include "sim/Crc.h"

#include <utility>

namespace sim {
namespace {

constexpr qsizetype longestFrame = 256;
constexpr qsizetype shortestFrame = 4;

quint8 ByteAt(QByteArrayView bytes, qsizetype index) {
    return static_cast<quint8>(bytes[index]);
}

// Returns the length that the frame announces; 0 when its function doesn't determine it, -1 while more bytes
// are needed.
qsizetype AnnouncedLength(QByteArrayView bytes) {
    if (bytes.size() < 2) {
        return -1;
    }
    switch (ByteAt(bytes, 1)) {
    case 3:
    case 6:
        return 8;
    case 16:
        return bytes.size() < 7 ? -1 : 9 + ByteAt(bytes, 6);
    default:
        return 0;
    }
}

// Returns the length of the good frame at the start of the bytes; 0 when there is none (yet).
qsizetype FrameLength(QByteArrayView bytes) {
    const qsizetype announced = AnnouncedLength(bytes);
    if (announced > 0) {
        return bytes.size() >= announced && Crc16(bytes.first(announced)) == 0 ? announced : 0;
    }
    if (announced == 0) {
        for (qsizetype length = shortestFrame; length <= bytes.size(); ++length) {
            if (Crc16(bytes.first(length)) == 0) {
                return length;
            }
        }
    }
    return 0;
}

// Finds a frame after garbage. Only a request that this sensor would answer counts: the data of a long
// request that is still arriving must not be mistaken for a frame.
bool FindInside(QByteArrayView bytes, int ownAddress, qsizetype &start, qsizetype &length) {
    for (start = 1; start + shortestFrame <= bytes.size(); ++start) {
        const QByteArrayView rest = bytes.sliced(start);
        if (ByteAt(rest, 0) != ownAddress || AnnouncedLength(rest) <= 0) {
            continue;
        }
        length = FrameLength(rest);
        if (length > 0) {
            return true;
        }
    }
    return false;
}

} // namespace

std::vector<QByteArray> RequestAssembler::Append(QByteArrayView bytes, int ownAddress) {
    buffer_.append(bytes);
    std::vector<QByteArray> frames;
    while (!buffer_.isEmpty()) {
        qsizetype start = 0;
        qsizetype length = FrameLength(buffer_);
        if (length == 0 && !FindInside(buffer_, ownAddress, start, length)) {
            break;
        }
        frames.push_back(buffer_.mid(start, length));
        buffer_.remove(0, start + length);
    }
    if (buffer_.size() > longestFrame) {
        buffer_.remove(0, buffer_.size() - longestFrame);
    }
    return frames;
}

QByteArray RequestAssembler::Discard() {
    return std::exchange(buffer_, {});
}

} // namespace sim

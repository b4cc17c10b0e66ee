#include "sim/BootFrame.h"

#include <numeric>
#include <utility>

namespace sim {
namespace {

constexpr quint8 startMark = 0x0F;
constexpr quint8 endMark = 0x04;
constexpr quint8 escape = 0x05;

bool NeedsEscape(quint8 byte) {
    return byte == startMark || byte == endMark || byte == escape;
}

quint8 Sum(const QByteArray &bytes) {
    return std::accumulate(bytes.begin(), bytes.end(), quint8{0},
                           [](quint8 sum, char byte) { return static_cast<quint8>(sum + byte); });
}

} // namespace

QByteArray BootFrame(const QByteArray &payload) {
    QByteArray frame(2, static_cast<char>(startMark));
    const QByteArray plain = payload + static_cast<char>(-Sum(payload));
    for (const char byte : plain) {
        if (NeedsEscape(static_cast<quint8>(byte))) {
            frame.append(static_cast<char>(escape));
        }
        frame.append(byte);
    }
    return frame.append(static_cast<char>(endMark));
}

std::vector<HeardFrame> BootFrameReader::Append(QByteArrayView bytes) {
    std::vector<HeardFrame> frames;
    for (const char byte : bytes) {
        if (Take(static_cast<quint8>(byte))) {
            frames.push_back({payload_.chopped(1), size_});
            Discard();
        }
    }
    return frames;
}

void BootFrameReader::Discard() {
    payload_.clear();
    size_ = 0;
    inside_ = escaped_ = afterMark_ = false;
}

// Accepts the next byte. Returns true at the last byte of a good frame.
bool BootFrameReader::Take(quint8 byte) {
    ++size_;
    if (byte == startMark && afterMark_) {
        payload_.clear();
        size_ = 2;
        inside_ = true;
        escaped_ = false;
        return false;
    }
    afterMark_ = byte == startMark;
    if (!inside_) {
        return false;
    }
    const bool literal = std::exchange(escaped_, false);
    if (!literal && byte == endMark) {
        inside_ = false;
        return payload_.size() > 1 && Sum(payload_) == 0;
    }
    if (!literal && byte == escape) {
        escaped_ = true;
        return false;
    }
    // Accepts an escape only before a mark, and a mark only after an escape.
    inside_ = literal == NeedsEscape(byte) && payload_.size() < longest;
    payload_.append(static_cast<char>(byte));
    return false;
}

} // namespace sim

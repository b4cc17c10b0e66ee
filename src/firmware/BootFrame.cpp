#include "firmware/BootFrame.h"

#include <cstdint>

namespace ztv {

namespace BootFrame {
namespace {

constexpr char startMark = 0x0F;
constexpr char endMark = 0x04;
constexpr char escape = 0x05;

constexpr qsizetype marksOfFrame = 3;
constexpr qsizetype checksumBytes = 1;

std::uint8_t SumOf(const QByteArray &bytes) {
    unsigned sum = 0;
    for (const char byte : bytes) {
        sum += static_cast<std::uint8_t>(byte);
    }
    return static_cast<std::uint8_t>(sum);
}

} // namespace

QByteArray Encode(const QByteArray &payload) {
    const QByteArray bytes = payload + static_cast<char>(-SumOf(payload));
    QByteArray frame;
    frame.reserve(LongestOf(payload.size()));
    frame.append(2, startMark);
    for (const char byte : bytes) {
        if (byte == startMark || byte == endMark || byte == escape) {
            frame.append(escape);
        }
        frame.append(byte);
    }
    return frame.append(endMark);
}

qsizetype LongestOf(qsizetype payloadBytes) {
    return 2 * (payloadBytes + checksumBytes) + marksOfFrame;
}

Reader::State Reader::Take(char byte) {
    if (state_ != State::Open) {
        return state_;
    }
    if (place_ == Place::Inside || place_ == Place::Escaped) {
        if (place_ == Place::Inside && byte == escape) {
            place_ = Place::Escaped;
            return state_;
        }
        if (place_ == Place::Inside && byte == endMark) {
            return state_ = End();
        }
        if (place_ == Place::Escaped || byte != startMark) {
            place_ = Place::Inside;
            bytes_.append(byte);
            return state_ = bytes_.size() > mostPayloadBytes_ + checksumBytes ? State::TooLong : State::Open;
        }
        // A start mark that isn't escaped: the current frame is lost, and another may begin here. A third
        // start mark directly after the first two changes nothing.
        place_ = bytes_.isEmpty() ? Place::Inside : Place::FirstMark;
        bytes_.clear();
        return state_;
    }
    const bool second = place_ == Place::FirstMark && byte == startMark;
    place_ = second ? Place::Inside : byte == startMark ? Place::FirstMark : Place::Outside;
    return state_;
}

Reader::State Reader::End() {
    return bytes_.size() > checksumBytes && SumOf(bytes_) == 0 ? State::Complete : State::Damaged;
}

} // namespace BootFrame

} // namespace ztv

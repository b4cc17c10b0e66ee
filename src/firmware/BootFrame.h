#pragma once

#include <QByteArray>

namespace ztv {

// The frame around a packet on the boot line: two start marks, the payload and a checksum byte, an end mark.
// Marks within payload and checksum are escaped; the checksum makes the sum of both 0 modulo 256.
namespace BootFrame {

QByteArray Encode(const QByteArray &payload);

// The most bytes that a payload of that size can take on the line.
qsizetype LongestOf(qsizetype payloadBytes);

// Extracts one payload from the input. Skips everything before two start marks.
class Reader {
public:
    enum class State {
        Open,     // more bytes are needed
        Complete, // the payload is complete
        Damaged,  // the checksum is wrong, or the frame is empty
        TooLong,  // the payload exceeds the limit
    };

    explicit Reader(qsizetype mostPayloadBytes) : mostPayloadBytes_(mostPayloadBytes) {}

    // Accepts the next byte, unless the reader is done. Returns the state after it.
    State Take(char byte);

    // REQUIRES: the state is Complete.
    QByteArray Payload() const { return bytes_.chopped(1); }

private:
    enum class Place { Outside, FirstMark, Inside, Escaped };

    State End();

    qsizetype mostPayloadBytes_;
    Place place_ = Place::Outside;
    State state_ = State::Open;
    QByteArray bytes_; // payload and checksum
};

} // namespace BootFrame

} // namespace ztv

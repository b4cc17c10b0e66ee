#pragma once

#include <QByteArray>

// The frame around a packet on the boot line: two start marks, the payload and a checksum byte, an end mark.
// Marks within payload and checksum are escaped; the checksum makes the sum of both 0 modulo 256.
namespace BootFrame {

QByteArray Encode(const QByteArray &payload);

// The most bytes that a payload of that size takes on the line.
qsizetype LongestOf(qsizetype payloadBytes);

// Takes one payload out of what comes in. What stands before two start marks is passed over.
class Reader {
public:
    enum class State {
        Open,     // more is needed
        Complete, // the payload is there
        Damaged,  // the checksum is wrong, or there was nothing in the frame
        TooLong,  // the payload is longer than it may be
    };

    explicit Reader(qsizetype mostPayloadBytes) : mostPayloadBytes_(mostPayloadBytes) {}

    // Takes the next byte, unless the reader is done. The state behind it.
    State Take(char byte);

    // Once complete.
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

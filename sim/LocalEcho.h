#pragma once

#include "sim/Transmitter.h"

#include <QByteArray>

#include <functional>
#include <utility>

namespace sim {

// The local echo of a two-wire adapter: returns each byte that the host sends. The adapter knows nothing of
// the sensor, so neither waits for the other, except that a reply follows the echo of its request.
class LocalEcho {
public:
    explicit LocalEcho(std::function<void(const QByteArray &)> write) : echo_(std::move(write), [] {}) {}

    // Echoes the bytes. `characterMs` is the time of one byte on the line; 0 echoes all bytes at once.
    void GiveBack(const QByteArray &bytes, double characterMs) { echo_.Send({bytes, 0, characterMs}); }
    // Sends the echo that is due by now. A reply calls it before each of its pieces.
    void CatchUp() { echo_.Advance(); }
    // The time at which the last echoed byte is sent, on the clock of PreciseTimer; 0 when all are sent.
    qint64 End() const { return echo_.End(); }
    void Clear() { echo_.Clear(); }

private:
    Transmitter echo_;
};

} // namespace sim

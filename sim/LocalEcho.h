#pragma once

#include "sim/Transmitter.h"

#include <QByteArray>

#include <functional>

namespace sim {

// The local echo of a two-wire adapter: gives each byte that the host sends back to it. The adapter knows
// nothing of the sensor, so neither waits for the other; only a reply comes after the echo of its request.
class LocalEcho {
public:
    explicit LocalEcho(std::function<void(const QByteArray &)> write) : echo_(std::move(write), [] {}) {}

    // `characterMs` is the time of one byte on the line; 0 gives all back at once.
    void GiveBack(const QByteArray &bytes, double characterMs) { echo_.Send({bytes, 0, characterMs}); }
    // Gives out what is due by now. A reply calls it before each of its pieces.
    void CatchUp() { echo_.Advance(); }
    // When the last byte is out, on the clock of PreciseTimer.
    qint64 End() const { return echo_.End(); }
    void Clear() { echo_.Clear(); }

private:
    Transmitter echo_;
};

} // namespace sim

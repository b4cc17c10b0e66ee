#pragma once

#include <QByteArray>
#include <vector>

namespace ztv {

// Distinguishes the echo of a sent packet from an answer. A two-wire adapter may echo what is sent through
// it. The first packet that returns although it can't be an answer reveals such an adapter; from then on the
// first copy of each packet is its echo.
class BootEcho {
public:
    // Records that a packet was sent: a copy of it may return.
    void Sent(const QByteArray &packet) { owed_.push_back(packet); }

    // Returns true for the first copy of a sent packet. `isAnswer`: the payload would also be a good answer;
    // it then counts as one until the line is known to echo.
    bool Takes(const QByteArray &payload, bool isAnswer);

    // True when the line echoes and the copy of the last packet hasn't arrived yet.
    bool IsAwaited() const { return givesBack_ && !owed_.empty(); }

    // The size of the longest packet whose copy may still arrive.
    qsizetype Longest() const;

    // Stops expecting copies of the packets sent so far.
    void Settle() { owed_.clear(); }

private:
    bool givesBack_ = false;
    std::vector<QByteArray> owed_; // in the order in which they were sent
};

} // namespace ztv

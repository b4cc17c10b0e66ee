#pragma once

#include <QByteArray>
#include <vector>

// Tells the echo of a sent packet from an answer. An adapter for two wires may give back what is sent through
// it. The first packet that comes back although no answer can equal it gives such an adapter away; from then
// on the first copy of each packet is its echo.
class BootEcho {
public:
    // A packet was sent: a copy of it may come back.
    void Sent(const QByteArray &packet) { owed_.push_back(packet); }

    // True for the first copy of a sent packet. `isAnswer` tells that the payload would also be a good
    // answer, which it is taken for until the line is known to give back.
    bool Takes(const QByteArray &payload, bool isAnswer);

    // The line gives back, and the copy of the last packet hasn't come yet.
    bool IsAwaited() const { return givesBack_ && !owed_.empty(); }

    // The size of the longest packet that may still come back.
    qsizetype Longest() const;

    // Nothing that was sent so far can come back any more.
    void Settle() { owed_.clear(); }

private:
    bool givesBack_ = false;
    std::vector<QByteArray> owed_; // in the order in which they were sent
};

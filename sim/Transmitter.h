#pragma once

#include "sim/LineClock.h"
#include "sim/PreciseTimer.h"

#include <QByteArray>

#include <deque>
#include <functional>

namespace sim {

// One reply and its timing.
struct Transmission {
    QByteArray bytes;
    double waitMs = 0;      // before the first byte
    double characterMs = 0; // time of one byte; 0 sends all at once
    qint64 earliest = 0;    // not before this time, on the clock of PreciseTimer
};

// Sends replies one after the other. A reply that needs no time is sent at once, without a timer.
class Transmitter {
public:
    // Calls `sent` when the last reply is completely sent.
    Transmitter(std::function<void(const QByteArray &)> write, std::function<void()> sent);

    void Send(Transmission transmission);
    // Writes the bytes that are due by now, as the timer does.
    void Advance();
    // The time at which the last byte of the queue is sent, on the clock of PreciseTimer; 0 for an empty
    // queue.
    qint64 End() const { return queue_.empty() ? 0 : queue_.back().end; }
    void Clear();

private:
    struct Scheduled {
        QByteArray bytes;
        double characterNs = 0;
        qint64 begin = 0;
        qint64 end = 0;
        qsizetype written = 0;

        qsizetype DueAt(qint64 now) const;
        qint64 NextWrite() const;
    };

    std::function<void(const QByteArray &)> write_;
    std::function<void()> sent_;
    std::deque<Scheduled> queue_;
    LineClock clock_;
    PreciseTimer timer_;
};

} // namespace sim

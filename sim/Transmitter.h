#pragma once

#include "sim/LineClock.h"
#include "sim/PreciseTimer.h"

#include <QByteArray>

#include <deque>
#include <functional>

namespace sim {

// One reply and the time that it takes.
struct Transmission {
    QByteArray bytes;
    double waitMs = 0;      // before the first byte
    double characterMs = 0; // time of one byte; 0 sends all at once
};

// Sends replies one after the other. What needs no time leaves at once, without a timer.
class Transmitter {
public:
    // The second callback runs when the last reply is out as a whole.
    Transmitter(std::function<void(const QByteArray &)> write, std::function<void()> sent);

    void Send(Transmission transmission);
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

    void Advance();

    std::function<void(const QByteArray &)> write_;
    std::function<void()> sent_;
    std::deque<Scheduled> queue_;
    LineClock clock_;
    PreciseTimer timer_;
};

} // namespace sim

#pragma once

#include <QByteArray>
#include <QElapsedTimer>
#include <QTimer>

#include <deque>
#include <functional>

namespace sim {

// One reply and the time that it takes.
struct Transmission {
    QByteArray bytes;
    double waitMs = 0;      // silence before the first byte
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
    void Begin();
    void Advance();

    std::function<void(const QByteArray &)> write_;
    std::function<void()> sent_;
    std::deque<Transmission> queue_;
    qsizetype written_ = 0;
    QElapsedTimer sinceBegin_;
    QTimer timer_;
};

} // namespace sim

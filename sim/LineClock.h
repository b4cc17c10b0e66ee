#pragma once

#include <QtGlobal>

#include <optional>

namespace sim {

// Calculates when a line that carries one thing at a time is free, in nanoseconds. Replies are due by this
// time alone, so that delays of the program don't add up from exchange to exchange.
class LineClock {
public:
    // Reserves the line for a request that arrived at `now`. The line is busy for `before` (the request
    // itself, a wait) and then for the reply, which doesn't begin before `earliest`. Returns the time at
    // which the reply begins.
    qint64 Reserve(qint64 now, qint64 before, qint64 reply, qint64 earliest = 0);
    // Records that the last byte of the last reply was actually sent at `now`. A host that continues at once
    // is as late as that byte.
    void GivenOut(qint64 now);
    void Clear();

private:
    qint64 free_ = 0;
    std::optional<qint64> givenOut_;
};

} // namespace sim

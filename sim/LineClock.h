#pragma once

#include <QtGlobal>

#include <optional>

namespace sim {

// When a line that carries one thing at a time is free, in nanoseconds. Replies fall due by this time alone:
// how late the program really was doesn't add up from exchange to exchange.
class LineClock {
public:
    // A request came at `now`. The line is busy for `before` (the request itself, a wait) and then for the
    // reply, which doesn't begin before `earliest`. Returns when the reply begins.
    qint64 Reserve(qint64 now, qint64 before, qint64 reply, qint64 earliest = 0);
    // The last byte of the last reply was really given out at `now`. A host that goes on at once is as late.
    void GivenOut(qint64 now);
    void Clear();

private:
    qint64 free_ = 0;
    std::optional<qint64> givenOut_;
};

} // namespace sim

#include "sim/LineClock.h"

#include <algorithm>

namespace sim {
namespace {

// A program that was stopped for longer doesn't race to catch up.
constexpr qint64 mostCaughtUp = 20'000'000;
// A host that sends later than this wasn't waiting for the reply.
constexpr qint64 longestTurnaround = 10'000'000;
// The time that the pseudo terminal takes, there and back, when the processor is shared. A wire takes none.
constexpr qint64 transit = 100'000;

} // namespace

qint64 LineClock::Reserve(qint64 now, qint64 before, qint64 reply, qint64 earliest) {
    qint64 arrival = now;
    if (givenOut_ && now - *givenOut_ <= longestTurnaround) {
        const qint64 late = std::clamp<qint64>(*givenOut_ - free_, 0, mostCaughtUp);
        arrival -= late + std::min(now - *givenOut_, transit);
    }
    givenOut_.reset();
    const qint64 begin = std::max(std::max(arrival, free_) + before, earliest);
    free_ = begin + reply;
    return begin;
}

void LineClock::GivenOut(qint64 now) {
    givenOut_ = now;
}

void LineClock::Clear() {
    free_ = 0;
    givenOut_.reset();
}

} // namespace sim

#include "sim/LineClock.h"

#include <algorithm>

namespace sim {
namespace {

// The most delay that is caught up: a program that was stopped for longer doesn't hurry.
constexpr qint64 mostCaughtUp = 20'000'000;
// The longest time in which a host reacts to a reply. A host that sends later wasn't waiting for it.
constexpr qint64 longestTurnaround = 10'000'000;
// The time that the pseudo terminal takes, both ways, when the processor is shared. A wire takes none.
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

#include "link/RunSchedule.h"

#include <algorithm>

namespace ztv {

void RunSchedule::Clear() {
    onceQueue_.clear();
    running_.reset();
    lastWasOnce_ = false;
    for (Item &item : items_) {
        item.cyclic = false;
        item.once = false;
    }
}

void RunSchedule::StartCycle(int number, qint64 nowUs) {
    At(number).cyclic = true;
    At(number).dueUs = nowUs;
}

// Returns whether a one-shot is queued. One on the line doesn't count: its request may be older than its
// definition.
bool RunSchedule::Waits(int number) const {
    return std::find(onceQueue_.begin(), onceQueue_.end(), number) != onceQueue_.end();
}

void RunSchedule::QueueOnce(int number) {
    if (!Waits(number)) {
        At(number).once = true;
        onceQueue_.push_back(number);
    }
}

void RunSchedule::Withdraw(int number) {
    std::erase(onceQueue_, number);
    At(number).cyclic = false;
    At(number).once = At(number).once && running_ == number;
}

// The one-shot at the head of the queue and the cycle that is due first alternate where both wait.
RunSchedule::Next RunSchedule::AskNext(qint64 nowUs, qint64 earlyUs) const {
    const Next round = AskNextRound(nowUs, earlyUs);
    if (!onceQueue_.empty() && (!round.number || !lastWasOnce_)) {
        return {.number = onceQueue_.front(), .once = true, .askAgainUs = {}};
    }
    return round;
}

RunSchedule::Next RunSchedule::AskNextRound(qint64 nowUs, qint64 earlyUs) const {
    std::optional<int> first;
    for (int number = 0; number < Count; ++number) {
        if (At(number).cyclic && (!first || At(number).dueUs < At(*first).dueUs)) {
            first = number;
        }
    }
    if (!first) {
        return {};
    }
    const qint64 startUs = At(*first).dueUs - earlyUs;
    if (startUs <= nowUs) {
        return {.number = first, .once = false, .askAgainUs = {}};
    }
    return {.number = {}, .once = false, .askAgainUs = startUs};
}

void RunSchedule::Begin(const Next &next, qint64 nowUs) {
    running_ = next.number;
    lastWasOnce_ = next.once;
    if (next.once) {
        onceQueue_.pop_front();
        return;
    }
    // Stays on the period's grid. A round more than one period late restarts the grid, so that rounds never
    // bunch up.
    Item &item = At(*next.number);
    item.dueUs += item.periodUs;
    if (item.dueUs <= nowUs) {
        item.dueUs = nowUs + item.periodUs;
    }
}

void RunSchedule::End() {
    if (lastWasOnce_) {
        At(*running_).once = Waits(*running_);
    }
    running_.reset();
}

} // namespace ztv

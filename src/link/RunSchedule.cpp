#include "link/RunSchedule.h"

#include <algorithm>

void RunSchedule::Clear() {
    onceQueue_.clear();
    running_.reset();
    for (Item &item : items_) {
        item.cyclic = false;
        item.once = false;
    }
}

void RunSchedule::StartCycle(int number, qint64 nowUs) {
    At(number).cyclic = true;
    At(number).dueUs = nowUs;
}

// One that is on the line already doesn't wait: its request may be older than its definition.
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

// The one-shot at the head of the queue and the cycle that is due first take turns where both wait.
RunSchedule::Next RunSchedule::AskNext(qint64 nowUs) const {
    std::optional<int> first;
    for (int number = 0; number < Count; ++number) {
        if (At(number).cyclic && (!first || At(number).dueUs < At(*first).dueUs)) {
            first = number;
        }
    }
    const bool isDue = first && At(*first).dueUs <= nowUs;
    if (!onceQueue_.empty() && (!isDue || !lastWasOnce_)) {
        return {.number = onceQueue_.front(), .once = true, .askAgainUs = {}};
    }
    if (isDue) {
        return {.number = first, .once = false, .askAgainUs = {}};
    }
    return {
        .number = {}, .once = false, .askAgainUs = first ? std::optional(At(*first).dueUs) : std::nullopt};
}

void RunSchedule::Begin(const Next &next, qint64 nowUs) {
    running_ = next.number;
    lastWasOnce_ = next.once;
    if (next.once) {
        onceQueue_.pop_front();
        return;
    }
    // On its grid, but for a round that is late by more than a period: no two follow each other closely.
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

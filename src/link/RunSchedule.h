#pragma once

#include <QtGlobal>
#include <array>
#include <cstddef>
#include <deque>
#include <optional>

namespace ztv {

// Decides which of a few numbered transactions runs next. One-shots leave their queue first in, first out and
// alternate with the rounds of the cycles, so that neither starves. Times are microseconds of any one clock.
class RunSchedule {
public:
    static constexpr int Count = 5;

    // The run to start now and whether it is a one-shot; without a run, the time to ask again, if any.
    struct Next {
        std::optional<int> number;
        bool once = false;
        std::optional<qint64> askAgainUs;
    };

    void Clear();

    // Lets the next round of a cycle precede any one-shot where both wait.
    void PutRoundFirst() { lastWasOnce_ = true; }

    void PeriodUs(int number, qint64 period) { At(number).periodUs = period; }

    // Runs the transaction now and then every period, from start to start.
    void StartCycle(int number, qint64 nowUs);
    void StopCycle(int number) { At(number).cyclic = false; }

    // Queues one run, unless one is queued already.
    void QueueOnce(int number);

    // Prevents all further runs. A one-shot on the line stays busy until it ends.
    void Withdraw(int number);

    // From QueueOnce until the end of its run, and from StartCycle until StopCycle.
    bool IsBusy(int number) const { return At(number).cyclic || At(number).once; }

    // `earlyUs`: how long before its due time a round of a cycle may start.
    Next AskNext(qint64 nowUs, qint64 earlyUs = 0) const;

    // The same without the one-shots, for when the first of them has to wait.
    Next AskNextRound(qint64 nowUs, qint64 earlyUs = 0) const;
    void Begin(const Next &next, qint64 nowUs);
    void End();

private:
    struct Item {
        qint64 periodUs = 0;
        qint64 dueUs = 0; // start of the next round of the cycle
        bool cyclic = false;
        bool once = false; // its one-shot is queued or on the line
    };

    Item &At(int number) { return items_.at(static_cast<std::size_t>(number)); }
    const Item &At(int number) const { return items_.at(static_cast<std::size_t>(number)); }
    bool Waits(int number) const;

    std::array<Item, Count> items_;
    std::deque<int> onceQueue_;
    std::optional<int> running_;
    bool lastWasOnce_ = false;
};

} // namespace ztv

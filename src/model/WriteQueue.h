#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <vector>

namespace ztv {

// The user's writes that wait for the one on the line, first in, first out. A caller that wants to go on only
// when they are sent leaves a call here instead of waiting itself.
class WriteQueue {
public:
    struct Write {
        std::int16_t tag = 0;
        std::int32_t value = 0;
        bool isCommand = false; // acts on the values sent before it
    };

    // Adds a write behind all others.
    void Append(const Write &write) { writes_.push_back(write); }

    // Replaces the value of the row's waiting write, which keeps its turn; appends if there is none. Looks no
    // further back than the last command, so that a command acts on the values that were asked for before it.
    void Replace(const Write &write);

    bool IsEmpty() const { return writes_.empty(); }

    // Returns the value of the row's last waiting write, or none.
    std::optional<std::int32_t> ValueOf(std::int16_t tag) const;

    // Removes and returns the next write; none if the queue is empty.
    std::optional<Write> Next();

    // Returns true if the row's last waiting write has other rows' writes behind it.
    bool OthersFollow(std::int16_t tag) const;

    // Drops the values of the rows below `end`; commands stay.
    void DropValues(std::int16_t end);

    // Calls `work` as soon as no write waits: at once, or in the next Emptied().
    void WhenEmpty(std::function<void()> work);

    // Makes the calls that wait for an empty queue. REQUIRES: IsEmpty().
    void Emptied();

private:
    std::deque<Write> writes_;
    std::vector<std::function<void()>> works_;
};

} // namespace ztv

#include "model/WriteQueue.h"

#include <algorithm>
#include <utility>

namespace ztv {

void WriteQueue::Replace(const Write &write) {
    if (!write.isCommand) {
        for (auto waiting = writes_.rbegin(); waiting != writes_.rend() && !waiting->isCommand; ++waiting) {
            if (waiting->tag == write.tag) {
                waiting->value = write.value;
                return;
            }
        }
    }
    Append(write);
}

std::optional<std::int32_t> WriteQueue::ValueOf(std::int16_t tag) const {
    const auto last = std::find_if(writes_.rbegin(), writes_.rend(),
                                   [tag](const Write &write) { return write.tag == tag; });
    return last == writes_.rend() ? std::nullopt : std::optional(last->value);
}

std::optional<WriteQueue::Write> WriteQueue::Next() {
    if (writes_.empty()) {
        return std::nullopt;
    }
    const Write write = writes_.front();
    writes_.pop_front();
    return write;
}

bool WriteQueue::OthersFollow(std::int16_t tag) const {
    return ValueOf(tag) && writes_.back().tag != tag;
}

void WriteQueue::DropValues(std::int16_t end) {
    std::erase_if(writes_, [end](const Write &write) { return !write.isCommand && write.tag < end; });
}

void WriteQueue::WhenEmpty(std::function<void()> work) {
    if (writes_.empty()) {
        work();
    } else {
        works_.push_back(std::move(work));
    }
}

void WriteQueue::Emptied() {
    for (const std::function<void()> &work : std::exchange(works_, {})) {
        work();
    }
}

} // namespace ztv

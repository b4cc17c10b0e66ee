#include "firmware/BootEcho.h"

#include <algorithm>

namespace ztv {

bool BootEcho::Takes(const QByteArray &payload, bool isAnswer) {
    if (isAnswer && !givesBack_) {
        return false;
    }
    // Searches from the last packet: the copy of an earlier one was lost.
    const auto copy = std::find(owed_.rbegin(), owed_.rend(), payload);
    if (copy == owed_.rend()) {
        return false;
    }
    owed_.erase(owed_.begin(), copy.base());
    givesBack_ = true;
    return true;
}

qsizetype BootEcho::Longest() const {
    qsizetype longest = 0;
    for (const QByteArray &packet : owed_) {
        longest = std::max(longest, packet.size());
    }
    return longest;
}

} // namespace ztv

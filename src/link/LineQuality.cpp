#include "link/LineQuality.h"

#include <algorithm>

namespace ztv {

void LineQuality::Add(bool isGood) {
    if (count_ == 0) {
        isGood_.reset();
    }
    isGood_.set(next_, isGood);
    next_ = (next_ + 1) % MostExchanges;
    count_ = std::min(count_ + 1, MostExchanges);
}

// Places of the ring without an exchange count as bad, so that counting the good ones is enough.
std::optional<int> LineQuality::Percent() const {
    if (count_ == 0) {
        return std::nullopt;
    }
    constexpr std::size_t whole = 100;
    return static_cast<int>(isGood_.count() * whole / count_);
}

} // namespace ztv

#pragma once

#include <bitset>
#include <cstddef>
#include <optional>

namespace ztv {

// The share of exchanges that ended well among the last ones.
class LineQuality {
public:
    static constexpr std::size_t MostExchanges = 100;

    void Add(bool isGood);
    void Clear() { count_ = 0; }

    // Returns the number of exchanges that the percentage is of: MostExchanges at most.
    std::size_t Count() const { return count_; }

    // Returns the whole percents of good exchanges, rounded down, so that 100 means all; none before the
    // first exchange.
    std::optional<int> Percent() const;

private:
    std::bitset<MostExchanges> isGood_; // a ring
    std::size_t next_ = 0;
    std::size_t count_ = 0;
};

} // namespace ztv

#pragma once

#include <array>
#include <cstdint>

namespace ztv {

// The tabs of the main form, by their number in CurrentTab.
namespace Tab {

inline constexpr std::int16_t Basic = 1;
inline constexpr std::int16_t Advanced = 2;
inline constexpr std::int16_t Wizard = 3;
inline constexpr std::int16_t Distance = 4;
inline constexpr std::int16_t Checkout = 5;

struct Description {
    std::int16_t number;
    const char *key;
    const char *caption;
    std::int16_t helpContext; // 0: none of its own; the previous one stays in force
};

inline constexpr std::array Table = {
    Description{Basic, "Basic", "&Basic", 1020},       Description{Advanced, "Advanced", "&Advanced", 1030},
    Description{Wizard, "Wizard", "&Wizard", 1040},    Description{Distance, "Distance", "&Distance", 1050},
    Description{Checkout, "Checkout", "&Checkout", 0},
};

} // namespace Tab

} // namespace ztv

#pragma once

#include <cstdint>

namespace ztv {

inline constexpr std::int16_t unitCodes = 14;   // 0 to 13 are known; higher ones count as no unit
inline constexpr std::int16_t displayUnit = 10; // its text for 0 is the unit that a settings file names

// The way in which a value of a unit code is shown.
enum class UnitClass {
    None,       // the number alone
    Suffix,     // the number followed by the code's text for 0
    TextValued, // the code's text for the number
};

constexpr UnitClass ClassOfUnit(std::int16_t code) {
    switch (code) {
    case 1:
    case 3:
    case 4:
    case 12:
        return UnitClass::Suffix;
    case 2:
    case 5:
    case 6:
    case 7:
    case 8:
    case 9:
    case 10:
    case 11:
    case 13:
        return UnitClass::TextValued;
    default:
        return UnitClass::None;
    }
}

} // namespace ztv

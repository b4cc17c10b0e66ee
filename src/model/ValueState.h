#pragma once

namespace ztv {

// How the values in the parameter table relate to the sensor, for screens that must not show an old
// measurement as a present one.
enum class ValueState {
    NeverRead, // no sensor gave the values: they are the factory's, or those of a settings file
    Live,      // polls succeed
    Stale,     // the values are those of an earlier poll
    Held       // the sensor answers, but its values are kept out of the table
};

} // namespace ztv

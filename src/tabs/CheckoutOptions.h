#pragma once

#include "model/ParamDefines.h"

#include <array>
#include <cstdint>
#include <optional>

namespace ztv {

// The options of the Checkout tab: the caption of each and its writes, in their order.
namespace CheckoutOptions {

struct Write {
    std::int16_t tag = 0;
    std::int32_t value = 0;
};

struct Option {
    const char *caption = "";
    Write first;
    std::optional<Write> second;
};

// Forces the output to `counts` of its 12-bit converter.
constexpr Option Forced(const char *caption, std::int32_t counts) {
    return {.caption = caption,
            .first = {.tag = ParamDefines::AnalogOutputMode, .value = ParamDefines::ManualMode},
            .second = Write{.tag = ParamDefines::ManualOutput, .value = counts}};
}

// By the index of OptionAnalogOut.
inline constexpr std::array AnalogOut = {
    Forced("&0.0 V", 0),
    Forced("&2.5 V", 1024),
    Forced("&5.0 V", 2048),
    Forced("&7.5 V", 3072),
    Forced("&10.0 V", 4095),
    Option{.caption = "&Distance",
           .first = {.tag = ParamDefines::AnalogOutputMode, .value = ParamDefines::LinearMode},
           .second = {}},
};
inline constexpr int FullScale = 4;
inline constexpr int FollowsDistance = 5;

// By the index of OptionRange. The shorter range writes the far distance first, the longer one the maximum
// range, so that the far distance never exceeds the maximum range.
inline constexpr std::array Range = {
    Option{.caption = "60\" (5')",
           .first = {.tag = ParamDefines::FarDistance, .value = 6000},
           .second = Write{.tag = ParamDefines::MaxRange, .value = 6200}},
    Option{.caption = "420.00\" (35')",
           .first = {.tag = ParamDefines::MaxRange, .value = 42000},
           .second = Write{.tag = ParamDefines::FarDistance, .value = 42000}},
};

} // namespace CheckoutOptions

} // namespace ztv

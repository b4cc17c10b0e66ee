#pragma once

#include <cstdint>

namespace ztv {

// The numbered transactions of the link, each with one fixed use.
enum class LinkTransaction : std::int16_t {
    SingleWrite = 0,
    Poll = 1,
    SearchProbe = 2,
    AddressingProbe = 3,
    Download = 4
};

} // namespace ztv

#pragma once

#include "model/ClassZentrova.h"
#include "model/Global.h"

#include <cstdint>

namespace ztv {

// Returns the raw value of a parameter whose register has this word.
inline std::int32_t ValueOfWord(const ClassZentrova &zentrova, std::int16_t tag, std::int16_t word) {
    return zentrova.ParamSigned(tag) ? word : Global::UnsignedFromSigned(word);
}

} // namespace ztv

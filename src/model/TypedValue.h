#pragma once

#include "model/ClassZentrova.h"

#include <QString>
#include <cstdint>
#include <optional>

namespace ztv {

// The meaning of a text typed for a parameter, beside the table's present values.
struct TypedValue {
    enum class Verdict {
        Fits,
        OutOfRange, // or no number
        Conflicts   // with another distance or diameter
    };

    Verdict verdict = Verdict::Fits;
    std::int32_t raw = 0; // of a text that fits
    QString refusal = {}; // of any other, in words for the user

    // Judges a text, with or without its unit. Nothing is written.
    static TypedValue Of(const ClassZentrova &zentrova, const QString &text, std::int16_t tag);

    // Returns the near distance that must be written after a new value of `tag`: in the hyperbolic mode it
    // follows the far distance. Returns none for any other parameter or mode. REQUIRES: the table holds the
    // new value.
    static std::optional<std::int32_t> NearDistanceAfter(const ClassZentrova &zentrova, std::int16_t tag);
};

} // namespace ztv

#pragma once

#include "link/LineTap.h"
#include "model/ClassZentrova.h"

#include <cstdio>

namespace ztv {

// Prints each frame on a line, decoded, with its time.
class Tracer {
public:
    // REQUIRES: `zentrova`, which names the parameters, outlives this.
    Tracer(const ClassZentrova &zentrova, std::FILE *stream) : zentrova_(zentrova), stream_(stream) {}

    // Prints the frames of a line from now on. REQUIRES: the line is closed before this ends.
    void Watch(LineTap &tap);

private:
    void Print(const LineFrame &frame);

    const ClassZentrova &zentrova_;
    std::FILE *stream_;
};

} // namespace ztv

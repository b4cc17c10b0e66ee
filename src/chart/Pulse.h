#pragma once

#include "chart/BasicDrawing.h"

#include <cstdint>

namespace ztv {

// The sound pulse between transducer and target: 16 ticks out and 16 back. It grows on the way.
class Pulse {
public:
    // Advances by one tick: moves ZentrovaLine, and shows or hides it and FrameTarget by `echo`.
    void Advance(BasicDrawing &drawing, bool echo);

    // Puts a new pulse at the transducer, where it stays until the next Advance. Shows FrameTarget by `echo`.
    void Rest(BasicDrawing &drawing, bool echo);

private:
    std::int16_t step_ = 0;
    bool outbound_ = false;
};

} // namespace ztv

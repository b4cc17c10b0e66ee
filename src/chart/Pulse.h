#pragma once

#include "chart/BasicDrawing.h"

#include <cstdint>

// The sound pulse between transducer and target: 16 ticks out, 16 back, growing on its way.
class Pulse {
public:
    // One tick: moves ZentrovaLine, and shows or hides it and FrameTarget by whether an echo is received.
    void Advance(BasicDrawing &drawing, bool echo);

private:
    std::int16_t step_ = 0;
    bool outbound_ = false;
};

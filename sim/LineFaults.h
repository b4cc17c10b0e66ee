#pragma once

namespace sim {

// The deliberate faults of the sensor and its line.
struct LineFaults {
    bool mute = false;    // requests are neither executed nor answered
    bool pace = false;    // bytes take as long as on a wire
    bool echo = false;    // the adapter echoes what is sent through it
    int latencyMs = 0;    // added before every reply
    int exception = 0;    // answers everything with this exception code; 0 is off
    double drop = 0.0;    // probability that a reply is lost after the request was executed
    double corrupt = 0.0; // probability that one bit of a reply is flipped
};

} // namespace sim

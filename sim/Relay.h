#pragma once

namespace sim {

// A relay that switches at a distance and back at another one.
class Relay {
public:
    bool Update(int distance, int onThreshold, int offThreshold) {
        const bool nearIsOn = onThreshold < offThreshold;
        if (nearIsOn ? distance <= onThreshold : distance >= onThreshold) {
            closed_ = true;
        } else if (nearIsOn ? distance >= offThreshold : distance <= offThreshold) {
            closed_ = false;
        }
        return closed_;
    }

private:
    bool closed_ = false;
};

} // namespace sim

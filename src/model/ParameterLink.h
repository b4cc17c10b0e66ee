#pragma once

#include <cstdint>

// What the parameter table needs of the link to the sensor in order to send a single value.
class ParameterLink {
public:
    virtual ~ParameterLink() = default;

    virtual bool PortIsOpen() const = 0;

    // Turns the event loop until no single write is in flight.
    virtual void WaitForWriteIdle() = 0;

    // Starts the write of one parameter. No single write may be in flight. The outcome comes later, never
    // from within this call, and clears the row's pending mark.
    virtual void StartWrite(std::int16_t Tag, std::int32_t value) = 0;
};

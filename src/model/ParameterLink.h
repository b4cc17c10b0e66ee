#pragma once

#include <cstdint>

namespace ztv {

// The link to the sensor as the parameter table uses it: sends a single value, or all of them.
class ParameterLink {
public:
    virtual ~ParameterLink() = default;

    virtual bool PortIsOpen() const = 0;

    // Turns the event loop until no single write is in flight.
    virtual void WaitForWriteIdle() = 0;

    // Starts the write of one parameter. The outcome arrives later, never from within this call, and clears
    // the row's pending mark.
    // REQUIRES: no single write is in flight.
    virtual void StartWrite(std::int16_t Tag, std::int32_t value) = 0;

    // Download the whole table: define, set the values, then start. A row without a new value keeps the one
    // from the previous download. The outcome arrives later and clears WriteAllPending.
    virtual void DefineDownload() = 0;
    virtual void DownloadValue(std::int16_t Tag, std::int32_t value) = 0;
    virtual void StartDownload() = 0;
};

} // namespace ztv

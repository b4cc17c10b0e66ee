#pragma once

#include <cstdint>

// The link to the sensor as the parameter table needs it: sends a single value, or all of them.
class ParameterLink {
public:
    virtual ~ParameterLink() = default;

    virtual bool PortIsOpen() const = 0;

    // Turns the event loop until no single write is in flight.
    virtual void WaitForWriteIdle() = 0;

    // Starts the write of one parameter. No single write may be in flight. The outcome comes later, never
    // from within this call, and clears the row's pending mark.
    virtual void StartWrite(std::int16_t Tag, std::int32_t value) = 0;

    // A download of the whole table: defined, given its values, then started. A row that gets no value keeps
    // the one that it had in the download before. The outcome comes later and clears WriteAllPending.
    virtual void DefineDownload() = 0;
    virtual void DownloadValue(std::int16_t Tag, std::int32_t value) = 0;
    virtual void StartDownload() = 0;
};

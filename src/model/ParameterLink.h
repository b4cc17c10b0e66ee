#pragma once

#include <cstdint>

namespace ztv {

// The link to the sensor as the parameter table uses it: sends a single value, or all of them.
class ParameterLink {
public:
    virtual ~ParameterLink() = default;

    virtual bool PortIsOpen() const = 0;

    // True while a single write is in flight or its failure is being handled.
    virtual bool WriteIsUnderWay() const = 0;

    // Starts the write of one parameter. The outcome arrives later, never from within this call, clears the
    // row's pending mark, and leads to ClassZentrova::SendWaitingWrites.
    // REQUIRES: no write is under way.
    virtual void StartWrite(std::int16_t Tag, std::int32_t value) = 0;

    // Download the whole table: define, set the values, then start. A row without a new value keeps the one
    // from the previous download. The outcome arrives later and clears WriteAllPending.
    virtual void DefineDownload() = 0;
    virtual void DownloadValue(std::int16_t Tag, std::int32_t value) = 0;
    virtual void StartDownload() = 0;

    // Reports that the values of a settings file replace those of the table, also while the port is closed.
    virtual void TableLoaded() = 0;
};

} // namespace ztv

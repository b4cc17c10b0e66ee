#pragma once

#include "link/CommSettings.h"
#include "link/LinkStatus.h"
#include "link/Mbaxp.h"
#include "model/ClassZentrova.h"

#include <QObject>
#include <QString>
#include <cstdint>
#include <map>
#include <vector>

namespace ztv {

// The serial line of a command, and the sensors on it. Each call waits for the line and turns the event loop
// meanwhile. It throws a Failure that names the address and the reason.
class SensorLine : public QObject {
    Q_OBJECT

public:
    struct Place {
        QString device;
        CommSettings comm;         // its address isn't used
        int responseTimeoutMs = 0; // 0: the usual one for the baud rate
    };
    using Values = std::map<std::int16_t, std::int32_t>; // by tag

    // Opens the port. `zentrova` describes the parameters. REQUIRES: `zentrova` outlives this.
    SensorLine(const Place &place, const ClassZentrova &zentrova);

    // Reads the parameters from the sensor at `address`. A lost or damaged reply is asked for again, twice.
    Values Read(std::int16_t address, const std::vector<std::int16_t> &tags);

    // Returns how the sensor that was read last numbers its registers: 0 or 1.
    int AddressingMode() const { return addressingMode_; }

private:
    void FindAddressingMode(std::int16_t address);
    void ReadSpan(std::int16_t address, std::int16_t first, std::int16_t last, Values &values);
    void Run(std::int16_t address, std::int32_t start, std::int32_t quantity);
    LinkStatus RunOnce();

    const ClassZentrova &zentrova_;
    Mbaxp mbaxp_;
    int addressingMode_ = 0;
};

} // namespace ztv

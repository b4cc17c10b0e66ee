#pragma once

#include "cli/Failure.h"
#include "link/CommSettings.h"
#include "link/LineTap.h"
#include "link/LinkStatus.h"
#include "link/LinkTransaction.h"
#include "link/Mbaxp.h"
#include "model/ClassZentrova.h"

#include <QObject>
#include <QString>
#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <vector>

namespace ztv {

// The serial line of a command, and the sensors on it. Each call waits for the line and turns the event loop
// meanwhile. It throws a Failure that names the address and the reason, and Interrupted when a signal comes.
class SensorLine : public QObject {
    Q_OBJECT

public:
    struct Place {
        QString device;
        std::function<Failure()> portFailure; // why the device can't be opened
        CommSettings comm;                    // its address isn't used
        int responseTimeoutMs = 0;            // 0: the usual one for the baud rate
    };
    using Values = std::map<std::int16_t, std::int32_t>; // by tag

    // Opens the port. `zentrova` describes the parameters. REQUIRES: `zentrova` outlives this.
    SensorLine(const Place &place, const ClassZentrova &zentrova);

    // Sets the line's baud rate and parity, and opens the port again if they are others than before.
    void SetLine(const CommSettings &comm);

    // Reads the parameters from the sensor at `address`. A lost or damaged reply is asked for again, twice.
    Values Read(std::int16_t address, const std::vector<std::int16_t> &tags);

    // Returns how the sensor that was read last numbers its registers: 0 or 1.
    int AddressingMode() const { return addressingMode_; }

    // As Read, once, in the addressing mode that was found last. Leaves out what got no good reply.
    Values ReadOnce(std::int16_t address, const std::vector<std::int16_t> &tags);

    // The end of a request: its reply, or that none came.
    struct Outcome {
        LinkStatus status = LinkStatus::NoError;
        std::chrono::system_clock::time_point time;
    };

    // As ReadOnce, but adds to `values` and returns the outcome of each request.
    std::vector<Outcome> ReadOnce(std::int16_t address, const std::vector<std::int16_t> &tags,
                                  Values &values);

    // Returns whether a sensor answers at `address`, also with a refusal or damaged.
    bool IsAnswered(std::int16_t address);

    // Asks once how the sensor at `address` numbers its registers. A good answer holds until the next one.
    LinkStatus AskAddressingMode(std::int16_t address) { return AskAddressingMode(address, 1); }

    // Takes what a sensor answered earlier, for a line with several that differ.
    void UseAddressingMode(int mode) { addressingMode_ = mode; }

    // Writes a parameter, or the whole table, of the sensor that was read last. Returns NoError when the
    // sensor has confirmed that. Otherwise returns the last status: the sensor may have taken the values or
    // not. Throws when it refuses the first request. Repeats the request as Read does, but not that of a
    // command, which acts each time, or of the address, baud rate, parity and addressing mode, which move
    // what it is sent to.
    LinkStatus Write(std::int16_t address, std::int16_t tag, std::int32_t raw);
    LinkStatus WriteAll(std::int16_t address,
                        const Values &values); // a row that isn't among them is sent as 0

    // Returns true once a sensor has answered.
    bool HasAnswered() const { return hasAnswered_; }

    LineTap &Tap() { return mbaxp_.Tap(); }

private:
    struct Span {
        std::int16_t first;
        std::int16_t last;
    };

    void Open();
    static std::vector<Span> SpansOf(std::vector<std::int16_t> tags);
    LinkStatus AskAddressingMode(std::int16_t address, int tries);
    LinkStatus ReadSpan(std::int16_t address, const Span &span, int tries, Values &values);
    LinkStatus RunRead(std::int16_t address, std::int32_t start, std::int32_t quantity, int tries);
    LinkStatus RunWrite(std::int16_t address, LinkTransaction transaction, int tries);
    LinkStatus RunOnce(LinkTransaction transaction);

    const ClassZentrova &zentrova_;
    Place place_;
    Mbaxp mbaxp_;
    int addressingMode_ = 0;
    bool hasAnswered_ = false;
};

} // namespace ztv

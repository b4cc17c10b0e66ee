#pragma once

#include "link/CommSettings.h"
#include "link/LinkSession.h"

#include <QObject>
#include <cstdint>
#include <functional>

namespace ztv {

// The rest of a search: the probes left on the setting under test, and whether all addresses are probed again
// on each setting after it.
struct RemainingSearch {
    CommSettings line;
    int probes = 0;
    int addresses = 0;
    bool varies = false;
    std::int16_t timeoutMs = 0; // 0: that of the baud rate
};

// The probes that are left and the time that they take if nobody answers.
struct SearchWork {
    int probes = 0;
    double milliseconds = 0;
};
SearchWork WorkLeft(const RemainingSearch &rest);

// Searches for sensors: reads one register of each slave address in turn and, if asked, repeats that on every
// line setting. Runs by itself from Start on: there is no loop, but each answer of the link, good or bad,
// sends the next probe.
// REQUIRES: the link is offline.
class DeviceSearch : public QObject {
    Q_OBJECT

public:
    struct AddressRange {
        std::int16_t bottom;
        std::int16_t top;
    };

    // The user's choices, read again at each answer.
    struct Choices {
        std::function<AddressRange()> addressRange;
        std::function<bool()> varyCommSettings;
        std::int16_t timeoutMs = 0; // for each answer; 0: that of the baud rate
    };

    // Sets the master to the line of `start`, on which the search begins. Its address doesn't count.
    DeviceSearch(LinkSession &link, const CommSettings &start, Choices choices, QObject *parent = nullptr);
    ~DeviceSearch() override;

    // Returns false when the port can't be opened; the master's LastError is then the reason.
    bool Start();

    // Ends the search at the answer that is due.
    void Stop();

    // Ends the search at once: closes the port and emits nothing more.
    void Abandon();

    bool IsSearching() const { return searching_; }
    std::int16_t SearchAddress() const { return tried_.address; }
    std::int16_t DevicesFound() const { return devicesFound_; }
    bool StopRequested() const { return stopRequested_; }
    std::int16_t SearchPort() const { return tried_.port; }
    std::int16_t SearchBaud() const { return tried_.baud; }
    std::int16_t SearchParityStop() const { return tried_.parityStop; }

    int ProbesDone() const { return probesDone_; }
    RemainingSearch Remaining() const; // the probe that is on the line counts as left

Q_SIGNALS:
    void Started();                              // the port is open
    void Probing();                              // the address under test is about to be probed
    void ProbeRefused(LinkStatus status);        // the search pauses until it is stopped
    void DeviceFound(const CommSettings &place); // a device gave a good reply
    void Ended();                                // the port is closed

    // Reports how far the search is as each probe is sent. The probe that is on the line counts as left.
    void Progressed(int probesDone, const SearchWork &left);

    // The search ended early and the port is closed: at the address and settings under test the adapter was
    // lost or refused the settings.
    void BrokenOff(LinkStatus status);

private:
    void FoundDevice(LinkStatus status);
    void SendProbe();
    void NextCommSettings(bool restart);
    void ApplyCommSettings();
    void End();
    void BreakOff(LinkStatus status);

    LinkSession &link_;
    Choices choices_;
    CommSettings tried_;
    std::int16_t devicesFound_ = 0;
    bool stopRequested_ = false;
    bool searching_ = false;
    bool standsStill_ = false; // its last probe was refused
    int probesDone_ = 0;
};

} // namespace ztv

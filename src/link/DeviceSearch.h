#pragma once

#include "link/LinkSession.h"

#include <QObject>
#include <cstdint>
#include <functional>
#include <vector>

namespace ztv {

// The line that a search starts on: a port number and two indices.
struct SearchStart {
    std::int16_t port;
    std::int16_t baud;
    std::int16_t parityStop;
};

// The rest of a search: the probes left on the setting under test, and whether all addresses are probed again
// on each setting after it.
struct RemainingSearch {
    std::int16_t baud;
    std::int16_t parityStop;
    int probes;
    int addresses;
    bool varies;
};

// The probes that are left and the time that they take if nobody answers.
struct SearchWork {
    int probes = 0;
    double milliseconds = 0;
};
SearchWork WorkLeft(const RemainingSearch &rest);

// A slave address and the indices of the line setting on which it is probed.
struct SearchPlace {
    std::int16_t address;
    std::int16_t baud;
    std::int16_t parityStop;
};

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
    };

    // Sets the master to the line that the search starts on.
    DeviceSearch(LinkSession &link, const SearchStart &start, Choices choices, QObject *parent = nullptr);
    ~DeviceSearch() override;

    // Returns false when the port can't be opened; the master's LastError is then the reason.
    bool Start();

    // Ends the search at the answer that is due.
    void Stop();

    // Ends the search at once: closes the port and emits nothing more.
    void Abandon();

    bool IsSearching() const { return searching_; }
    std::int16_t SearchAddress() const { return searchAddress_; }
    std::int16_t DevicesFound() const { return devicesFound_; }
    bool StopRequested() const { return stopRequested_; }
    std::int16_t SearchPort() const { return searchPort_; }
    std::int16_t SearchBaud() const { return searchBaud_; }
    std::int16_t SearchParityStop() const { return searchParityStop_; }
    static const std::vector<std::int16_t> &SearchTimeoutByBaud(); // milliseconds

    int ProbesDone() const { return probesDone_; }
    RemainingSearch Remaining() const; // the probe that is on the line counts as left

Q_SIGNALS:
    void Started();                             // the port is open
    void Probing();                             // the address under test is about to be probed
    void ProbeRefused(std::int16_t code);       // the search pauses until it is stopped
    void DeviceFound(const SearchPlace &place); // a device gave a good reply
    void Ended();                               // the port is closed

    // Reports how far the search is as each probe is sent. The probe that is on the line counts as left.
    void Progressed(int probesDone, const SearchWork &left);

    // The search ended early and the port is closed: at the address and settings under test the adapter was
    // lost or refused the settings.
    void BrokenOff(std::int16_t status);

private:
    void FoundDevice(std::int16_t status);
    void SendProbe();
    void NextCommSettings(bool restart);
    void ApplyCommSettings();
    void End();
    void BreakOff(std::int16_t status);

    LinkSession &link_;
    Choices choices_;
    std::int16_t searchAddress_ = 0;
    std::int16_t devicesFound_ = 0;
    bool stopRequested_ = false;
    std::int16_t searchPort_;
    std::int16_t searchBaud_;
    std::int16_t searchParityStop_;
    bool searching_ = false;
    bool standsStill_ = false; // its last probe was refused
    int probesDone_ = 0;
};

} // namespace ztv

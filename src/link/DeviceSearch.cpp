#include "link/DeviceSearch.h"

#include "link/LineCodes.h"
#include "model/CheckedAt.h"
#include "model/InitArray.h"
#include "support/Numbers.h"

#include <algorithm>
#include <utility>

namespace ztv {

namespace {

constexpr std::int16_t probedRegister = 1; // every sensor has it, however it numbers its registers
constexpr std::int16_t probePeriodMs = 50;
constexpr std::int16_t highestBaud = 4;
constexpr std::int16_t highestParityStop = 3;

constexpr int requestBytes = 8;

struct LineIndices {
    std::int16_t baud;
    std::int16_t parityStop;
};

// Returns the setting that is tried after `indices`. Settings are tried from the highest indices down; for
// each baud index all parity indices are tried. After the last setting the baud index is below 0.
LineIndices Below(LineIndices indices) {
    if (--indices.parityStop < 0) {
        indices.parityStop = highestParityStop;
        --indices.baud;
    }
    return indices;
}

double MillisecondsOfProbe(LineIndices line) {
    const double lineTimeUs =
        static_cast<double>(LineTimeUs(LineCodesOf(line.baud, line.parityStop), requestBytes));
    return lineTimeUs / 1000 +
           CheckedAt(DeviceSearch::SearchTimeoutByBaud(), line.baud, "SearchTimeoutByBaud");
}

} // namespace

SearchWork WorkLeft(const RemainingSearch &rest) {
    LineIndices line{.baud = rest.baud, .parityStop = rest.parityStop};
    SearchWork work;
    const auto add = [&](int probes) {
        work.probes += probes;
        work.milliseconds += probes * MillisecondsOfProbe(line);
    };
    add(rest.probes);
    if (rest.varies) {
        for (line = Below(line); line.baud >= 0; line = Below(line)) {
            add(rest.addresses);
        }
    }
    return work;
}

const std::vector<std::int16_t> &DeviceSearch::SearchTimeoutByBaud() {
    // Far below the link's usual ones: a silent address must cost little.
    static const std::vector<std::int16_t> timeouts = InitArray::Integers({120, 60, 30, 30, 30});
    return timeouts;
}

DeviceSearch::DeviceSearch(LinkSession &link, const SearchStart &start, Choices choices, QObject *parent)
    : QObject(parent),
      link_(link),
      choices_(std::move(choices)),
      searchPort_(start.port),
      searchBaud_(start.baud),
      searchParityStop_(start.parityStop) {
    connect(&link_, &LinkSession::DeviceAnswered, this, &DeviceSearch::FoundDevice);
    ApplyCommSettings();
}

DeviceSearch::~DeviceSearch() {
    Abandon();
}

bool DeviceSearch::Start() {
    searchAddress_ = choices_.addressRange().bottom;
    if (choices_.varyCommSettings()) {
        NextCommSettings(true);
    }
    if (!link_.Mbaxp1().OpenPort()) {
        return false;
    }
    searching_ = true;
    stopRequested_ = false;
    devicesFound_ = 0;
    probesDone_ = 0;
    Q_EMIT Started();
    SendProbe();
    return true;
}

void DeviceSearch::Stop() {
    stopRequested_ = true;
    // After a refused probe no answer is due that would end the search.
    if (searching_ && standsStill_) {
        End();
        Q_EMIT Ended();
    }
}

void DeviceSearch::Abandon() {
    stopRequested_ = true;
    if (searching_) {
        searching_ = false;
        link_.Mbaxp1().ClosePort();
    }
}

void DeviceSearch::SendProbe() {
    standsStill_ = false;
    Q_EMIT Probing();
    Q_EMIT Progressed(probesDone_, WorkLeft(Remaining()));
    Mbaxp &master = link_.Mbaxp1();
    if (master.DefineReadRegisters(LinkTransaction::SearchProbe, searchAddress_, probedRegister, 1,
                                   probePeriodMs)) {
        master.TriggerOnce(LinkTransaction::SearchProbe);
        return;
    }
    standsStill_ = true;
    Q_EMIT ProbeRefused(master.LastError());
}

// Moves on by the answer to the probe: 0 for a good one, otherwise the status of the failure. ReadError and
// WriteError mean a lost adapter and break the search off; any other status means no device at that address.
void DeviceSearch::FoundDevice(std::int16_t status) {
    if (!searching_) {
        return;
    }
    if (status == LinkStatus::ReadError || status == LinkStatus::WriteError) {
        BreakOff(status);
        return;
    }
    ++probesDone_;
    if (status == LinkStatus::NoError) {
        devicesFound_ = ToInt16(devicesFound_ + 1);
        Q_EMIT DeviceFound({.address = searchAddress_, .baud = searchBaud_, .parityStop = searchParityStop_});
    }
    const AddressRange range = choices_.addressRange();
    searchAddress_ = ToInt16(searchAddress_ + 1);
    if (choices_.varyCommSettings() && searchAddress_ > range.top) {
        searchAddress_ = range.bottom;
        link_.Mbaxp1().ClosePort();
        NextCommSettings(false);
        if (!link_.Mbaxp1().OpenPort() && !stopRequested_) {
            BreakOff(link_.Mbaxp1().LastError());
            return;
        }
    }
    if (searchAddress_ <= range.top && !stopRequested_) {
        SendProbe();
    } else {
        End();
        Q_EMIT Ended();
    }
}

void DeviceSearch::NextCommSettings(bool restart) {
    LineIndices next{.baud = searchBaud_, .parityStop = searchParityStop_};
    if (restart) {
        next = {.baud = highestBaud, .parityStop = highestParityStop + 1};
    }
    next = Below(next);
    if (next.baud < 0) {
        stopRequested_ = true;
        return;
    }
    searchBaud_ = next.baud;
    searchParityStop_ = next.parityStop;
    ApplyCommSettings();
}

void DeviceSearch::ApplyCommSettings() {
    link_.SetMbaxp1CommProperties(searchPort_, searchBaud_, searchParityStop_,
                                  CheckedAt(SearchTimeoutByBaud(), searchBaud_, "SearchTimeoutByBaud"));
}

void DeviceSearch::End() {
    searching_ = false;
    link_.Mbaxp1().ClosePort();
}

// Ends the search early: without the adapter every further address would look silent.
void DeviceSearch::BreakOff(std::int16_t status) {
    End();
    Q_EMIT BrokenOff(status);
}

RemainingSearch DeviceSearch::Remaining() const {
    const AddressRange range = choices_.addressRange();
    return {.baud = searchBaud_,
            .parityStop = searchParityStop_,
            .probes = searching_ ? std::max(range.top - searchAddress_ + 1, 0) : 0,
            .addresses = std::max(range.top - range.bottom + 1, 0),
            .varies = searching_ && choices_.varyCommSettings()};
}

} // namespace ztv

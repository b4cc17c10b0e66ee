#include "link/DeviceSearch.h"

#include "link/LineCodes.h"
#include "model/CheckedAt.h"
#include "model/LineTables.h"
#include "support/Numbers.h"

#include <algorithm>
#include <utility>

namespace ztv {

namespace {

constexpr std::int16_t probedRegister = 1; // every sensor has it, however it numbers its registers
constexpr std::int16_t probePeriodMs = 50;

constexpr int requestBytes = 8;

// Returns the setting that is tried after `line`. Settings are tried from the highest indices down; for
// each baud index all parity indices are tried. After the last setting the baud index is below 0.
CommSettings Below(CommSettings line) {
    if (--line.parityStop < 0) {
        line.parityStop = HighestParityStop;
        --line.baud;
    }
    return line;
}

std::int16_t TimeoutMs(const CommSettings &line, std::int16_t chosen) {
    return chosen != 0 ? chosen : CheckedAt(BaudTable, line.baud, "SearchTimeoutByBaud").searchTimeoutMs;
}

double MillisecondsOfProbe(const CommSettings &line, std::int16_t timeoutMs) {
    const double lineTimeUs =
        static_cast<double>(LineTimeUs(LineCodesOf(line.baud, line.parityStop), requestBytes));
    return lineTimeUs / 1000 + TimeoutMs(line, timeoutMs);
}

} // namespace

SearchWork WorkLeft(const RemainingSearch &rest) {
    CommSettings line = rest.line;
    SearchWork work;
    const auto add = [&](int probes) {
        work.probes += probes;
        work.milliseconds += probes * MillisecondsOfProbe(line, rest.timeoutMs);
    };
    add(rest.probes);
    if (rest.varies) {
        for (line = Below(line); line.baud >= 0; line = Below(line)) {
            add(rest.addresses);
        }
    }
    return work;
}

DeviceSearch::DeviceSearch(LinkSession &link, const CommSettings &start, Choices choices, QObject *parent)
    : QObject(parent),
      link_(link),
      choices_(std::move(choices)),
      tried_(start) {
    tried_.address = 0; // none yet
    connect(&link_, &LinkSession::DeviceAnswered, this, &DeviceSearch::FoundDevice);
    ApplyCommSettings();
}

DeviceSearch::~DeviceSearch() {
    Abandon();
}

bool DeviceSearch::Start() {
    tried_.address = choices_.addressRange().bottom;
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
    if (master.DefineReadRegisters(LinkTransaction::SearchProbe, tried_.address, probedRegister, 1,
                                   probePeriodMs)) {
        master.TriggerOnce(LinkTransaction::SearchProbe);
        return;
    }
    standsStill_ = true;
    Q_EMIT ProbeRefused(master.LastError());
}

// Moves on by the answer to the probe: NoError for a good one, otherwise the status of the failure. ReadError
// and WriteError mean a lost adapter and break the search off; any other status means no device at that
// address.
void DeviceSearch::FoundDevice(LinkStatus status) {
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
        const CommSettings place = tried_; // a handler may change where the search is
        Q_EMIT DeviceFound(place);
    }
    const AddressRange range = choices_.addressRange();
    tried_.address = ToInt16(tried_.address + 1);
    if (choices_.varyCommSettings() && tried_.address > range.top) {
        tried_.address = range.bottom;
        link_.Mbaxp1().ClosePort();
        NextCommSettings(false);
        if (!link_.Mbaxp1().OpenPort() && !stopRequested_) {
            BreakOff(link_.Mbaxp1().LastError());
            return;
        }
    }
    if (tried_.address <= range.top && !stopRequested_) {
        SendProbe();
    } else {
        End();
        Q_EMIT Ended();
    }
}

void DeviceSearch::NextCommSettings(bool restart) {
    CommSettings next = tried_;
    if (restart) {
        next.baud = HighestBaud;
        next.parityStop = HighestParityStop + 1;
    }
    next = Below(next);
    if (next.baud < 0) {
        stopRequested_ = true;
        return;
    }
    tried_ = next;
    ApplyCommSettings();
}

void DeviceSearch::ApplyCommSettings() {
    link_.SetMbaxp1CommProperties(tried_.port, tried_.baud, tried_.parityStop,
                                  TimeoutMs(tried_, choices_.timeoutMs));
}

void DeviceSearch::End() {
    searching_ = false;
    link_.Mbaxp1().ClosePort();
}

// Ends the search early: without the adapter every further address would look silent.
void DeviceSearch::BreakOff(LinkStatus status) {
    End();
    Q_EMIT BrokenOff(status);
}

RemainingSearch DeviceSearch::Remaining() const {
    const AddressRange range = choices_.addressRange();
    return {.line = tried_,
            .probes = searching_ ? std::max(range.top - tried_.address + 1, 0) : 0,
            .addresses = std::max(range.top - range.bottom + 1, 0),
            .varies = searching_ && choices_.varyCommSettings(),
            .timeoutMs = choices_.timeoutMs};
}

} // namespace ztv

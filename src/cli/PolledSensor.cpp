#include "cli/PolledSensor.h"

#include <ranges>
#include <utility>

namespace ztv {

namespace {

bool IsDamage(LinkStatus status) {
    return status == LinkStatus::CrcError || status == LinkStatus::UnexpectedResponse ||
           status == LinkStatus::MissingBytes;
}

// Returns when the last good reply came; without one, when the last was given up.
std::chrono::system_clock::time_point TimeOf(const std::vector<SensorLine::Outcome> &outcomes) {
    for (const SensorLine::Outcome &outcome : outcomes | std::views::reverse) {
        if (outcome.status == LinkStatus::NoError) {
            return outcome.time;
        }
    }
    return outcomes.empty() ? std::chrono::system_clock::now() : outcomes.back().time;
}

} // namespace

void ReplyCounts::Count(LinkStatus status) {
    ++requests;
    if (status == LinkStatus::NoError) {
        ++good;
    } else if (status <= LastException) {
        ++refused;
    } else {
        ++lost;
        damaged += IsDamage(status) ? 1 : 0;
    }
}

ReplyCounts &ReplyCounts::operator+=(const ReplyCounts &other) {
    requests += other.requests;
    good += other.good;
    lost += other.lost;
    damaged += other.damaged;
    refused += other.refused;
    return *this;
}

PolledSensor::PolledSensor(std::int16_t address, std::vector<std::int16_t> tags)
    : address_(address),
      tags_(std::move(tags)) {}

PolledSensor::Reading PolledSensor::Read(SensorLine &line) {
    Reading reading;
    deviceIsGone_ = false;
    if (!addressingMode_) {
        const LinkStatus status = line.AskAddressingMode(address_);
        Take(status);
        reading.time = std::chrono::system_clock::now();
        if (status != LinkStatus::NoError) {
            return reading;
        }
        addressingMode_ = line.AddressingMode();
    }
    line.UseAddressingMode(*addressingMode_);
    const std::vector<SensorLine::Outcome> outcomes = line.ReadOnce(address_, tags_, reading.values);
    for (const SensorLine::Outcome &outcome : outcomes) {
        Take(outcome.status);
    }
    reading.time = TimeOf(outcomes);
    return reading;
}

void PolledSensor::Take(LinkStatus status) {
    counts_.Count(status);
    if (status == LinkStatus::NoError) {
        return;
    }
    lastFailure_ = status;
    deviceIsGone_ = status == LinkStatus::ReadError || status == LinkStatus::WriteError;
    if (status > LastException) {
        addressingMode_.reset();
    }
}

} // namespace ztv

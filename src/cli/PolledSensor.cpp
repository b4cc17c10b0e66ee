#include "cli/PolledSensor.h"

#include <utility>

namespace ztv {

namespace {

bool IsDamage(LinkStatus status) {
    return status == LinkStatus::CrcError || status == LinkStatus::UnexpectedResponse ||
           status == LinkStatus::MissingBytes;
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
    for (const LinkStatus status : line.ReadOnce(address_, tags_, reading.values)) {
        Take(status);
    }
    reading.time = std::chrono::system_clock::now();
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

#pragma once

#include "sim/SimulatedSensor.h"
#include "tests/sim/TestHost.h"
#include "tests/sim/TestPresets.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace sim {

namespace test {

// A sensor with the presets of the tests: address 1, 38400 baud, two stop bits, addressing mode 1.
class SensorFixture : public testing::Test {
protected:
    SensorFixture() { options_.presets = presets_.Path(); }

    void Start();
    std::string Run(const char *command) { return sensor_->Execute(command).toStdString(); }

    // The reply without its CRC, in hexadecimal; empty when the sensor saw the request and kept silent.
    std::string Ask(const TestHost &host, const char *hex) { return AskFrame(host, FrameOf(hex)); }
    std::string AskFrame(const TestHost &host, const QByteArray &frame);

    TestPresets presets_;
    SensorOptions options_;
    std::unique_ptr<SimulatedSensor> sensor_;
};

} // namespace test

} // namespace sim

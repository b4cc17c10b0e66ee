#include "tests/sim/SensorFixture.h"

#include "tests/helpers/Wait.h"

namespace sim {

using ztv::WaitUntil;

namespace test {

void SensorFixture::Start() {
    sensor_ = std::make_unique<SimulatedSensor>(options_);
    ASSERT_EQ(sensor_->Start().toStdString(), "");
}

std::string SensorFixture::AskFrame(const TestHost &host, const QByteArray &frame) {
    const std::size_t seen = sensor_->Requests().size();
    const int replies = sensor_->Stats().replies;
    host.Write(frame);
    if (!WaitUntil([&] { return sensor_->Requests().size() > seen; })) {
        return "not seen";
    }
    if (sensor_->Stats().replies == replies) {
        return host.Read().toHex().toStdString();
    }
    QByteArray reply;
    WaitUntil([&] {
        reply += host.Read();
        return !reply.isEmpty();
    });
    return reply.chopped(2).toHex().toStdString();
}

} // namespace test

} // namespace sim

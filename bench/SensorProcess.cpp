#include "bench/SensorProcess.h"

#include <stdexcept>

namespace {

constexpr int startMs = 10000;

} // namespace

SensorProcess::SensorProcess(const QStringList &options) {
    process_.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process_.start(QStringLiteral(ZTV_BIN_DIR "/ztv-sim"),
                   QStringList{QStringLiteral("--link"), Device()} + options);
    if (!process_.waitForReadyRead(startMs) || !process_.readLine().startsWith("port ")) {
        throw std::runtime_error("the simulated sensor doesn't start");
    }
}

SensorProcess::~SensorProcess() {
    process_.terminate();
    process_.waitForFinished();
}

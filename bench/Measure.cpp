#include "bench/Measure.h"

#include <QEventLoop>
#include <QFile>
#include <QTimer>
#include <algorithm>
#include <ctime>

namespace ztv {

namespace {

double ReadClockMs(clockid_t clock) {
    timespec time{};
    clock_gettime(clock, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

} // namespace

double Measure::NowMs() {
    return ReadClockMs(CLOCK_MONOTONIC);
}

double Measure::ProcessorMs() {
    return ReadClockMs(CLOCK_PROCESS_CPUTIME_ID);
}

double Measure::ResidentMiB() {
    QFile status(QStringLiteral("/proc/self/status"));
    if (status.open(QIODevice::ReadOnly)) {
        for (const QByteArray &line : status.readAll().split('\n')) {
            if (line.startsWith("VmRSS:")) {
                return line.simplified().split(' ').at(1).toDouble() / 1024;
            }
        }
    }
    return 0;
}

double Measure::Median(std::vector<double> values) {
    if (values.empty()) {
        return 0;
    }
    std::sort(values.begin(), values.end());
    const std::size_t middle = values.size() / 2;
    return values.size() % 2 != 0 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

void Measure::Idle(int milliseconds) {
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

} // namespace ztv

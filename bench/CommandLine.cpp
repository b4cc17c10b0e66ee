#include "bench/CommandLine.h"

#include "bench/Measure.h"
#include "bench/StartedProgram.h"
#include "tools/SensorProcess.h"

#include <QFile>
#include <QStandardPaths>
#include <array>
#include <cstdio>
#include <stdexcept>

namespace ztv {

namespace {

constexpr int starts = 15;
constexpr int rounds = 200;

constexpr double mostTimesMbpoll = 1.3;
constexpr double mostTimesTheLine = 1.05;
constexpr double mostMiB = 25;

constexpr double msPerByte = 11 / 38.4;
constexpr double silentMs = 1.75; // before each frame

struct WatchedPoll {
    const char *name;
    QStringList parameters;
    int exchanges;
    int bytes; // of requests and replies
};

double MsOfARound(const WatchedPoll &poll) {
    return poll.bytes * msPerByte + 2 * poll.exchanges * silentMs;
}

QString Ctl() {
    return QStringLiteral(ZTV_BIN_DIR "/ztv-ctl");
}

// The time from the start of a program to the first line that has a value.
double MsToValue(const QString &program, const QStringList &arguments, const char *value) {
    StartedProgram started(program, arguments);
    while (!started.ReadLine().contains(value)) {
    }
    return Measure::NowMs() - started.StartMs();
}

double MedianMsToValue(const QString &program, const QStringList &arguments, const char *value) {
    std::vector<double> times;
    for (int run = 0; run < starts; ++run) {
        times.push_back(MsToValue(program, arguments, value));
    }
    return Measure::Median(times);
}

std::vector<Peer> Mbpoll(const QString &device) {
    const QString program = QStandardPaths::findExecutable(QStringLiteral("mbpoll"));
    if (program.isEmpty()) {
        return {};
    }
    const QStringList words =
        QStringLiteral("-m rtu -a 1 -b 38400 -P none -s 2 -0 -r 28 -1").split(u' ') + QStringList{device};
    return {{.name = QStringLiteral("mbpoll"), .value = MedianMsToValue(program, words, "1200")}};
}

// Returns what the kernel counted as the most that the process has used.
double PeakMiB(pid_t id) {
    QFile status(QStringLiteral("/proc/%1/status").arg(id));
    if (status.open(QIODevice::ReadOnly)) {
        for (const QByteArray &line : status.readAll().split('\n')) {
            if (line.startsWith("VmHWM:")) {
                constexpr double kibPerMib = 1024;
                return line.simplified().split(' ').at(1).toDouble() / kibPerMib;
            }
        }
    }
    throw std::runtime_error("the memory of a started program isn't known");
}

void MeasureStart(Figures &figures, const QString &device) {
    const QStringList words = {QStringLiteral("--port"), device, QStringLiteral("get"), QStringLiteral("28")};
    const std::vector<Peer> peers = Mbpoll(device);
    figures.Add({.name = QStringLiteral("start of ztv-ctl to the first value"),
                 .value = MedianMsToValue(Ctl(), words, "12.00"),
                 .unit = QStringLiteral("ms"),
                 .limit = mostTimesMbpoll,
                 .peers = peers,
                 .against = QStringLiteral("mbpoll")});
}

void MeasureWatch(Figures &figures, const QString &device, const WatchedPoll &poll) {
    StartedProgram watch(Ctl(), QStringList{QStringLiteral("--port"), device, QStringLiteral("watch"),
                                            QStringLiteral("--every"), QStringLiteral("0")} +
                                    poll.parameters);
    watch.ReadLine(); // the header
    watch.ReadLine();
    const double begin = Measure::NowMs();
    for (int round = 0; round < rounds; ++round) {
        watch.ReadLine();
    }
    constexpr double msPerSecond = 1000;
    const double msOfARound = (Measure::NowMs() - begin) / rounds;
    std::printf("%s: %.1f rounds a second\n", poll.name, msPerSecond / msOfARound);
    figures.Add({.name = QStringLiteral("a round of watch, %1").arg(QString::fromLatin1(poll.name)),
                 .value = msOfARound / MsOfARound(poll),
                 .unit = QStringLiteral("times the line's time"),
                 .limit = mostTimesTheLine,
                 .peers = {}});
    figures.Add({.name = QStringLiteral("memory of watch, %1").arg(QString::fromLatin1(poll.name)),
                 .value = PeakMiB(watch.Id()),
                 .unit = QStringLiteral("MiB"),
                 .limit = mostMiB,
                 .peers = {}});
}

} // namespace

void MeasureCommandLine(Figures &figures) {
    const SensorProcess sensor(
        {QStringLiteral("--pace"), QStringLiteral("--addressing"), QStringLiteral("0")});
    MeasureStart(figures, sensor.Device());
    const std::array polls = {
        WatchedPoll{
            .name = "one parameter", .parameters = {QStringLiteral("28")}, .exchanges = 1, .bytes = 15},
        WatchedPoll{.name = "the usual parameters", .parameters = {}, .exchanges = 2, .bytes = 60},
    };
    for (const WatchedPoll &poll : polls) {
        MeasureWatch(figures, sensor.Device(), poll);
    }
}

} // namespace ztv

#include "bench/StartUp.h"

#include "bench/Display.h"
#include "bench/Measure.h"
#include "bench/PlainLabels.h"
#include "bench/StartedProgram.h"
#include "tools/SensorProcess.h"

#include <QList>
#include <QStandardPaths>
#include <stdexcept>

namespace ztv {

namespace {

constexpr double startLimit = 4;  // times a bare Qt window
constexpr double mappedLimit = 1; // times another program for serial lines
constexpr double memoryLimitMiB = 60;
constexpr int starts = 15;
constexpr int pollMs = 60000;
constexpr double loadLimit = 5; // times the plain labels
constexpr int pollPeriodMs = 200;

struct Stage {
    double wallMs = 0; // since the process started
    double processorMs = 0;
    double residentMiB = 0;
};

Stage ReadStage(StartedProgram &program, const QByteArray &name) {
    const QList<QByteArray> words = program.ReadLine().split(' ');
    if (words.size() != 4 || words[0] != name) {
        throw std::runtime_error("a started program reports something else than expected");
    }
    return {.wallMs = words[1].toDouble() - program.StartMs(),
            .processorMs = words[2].toDouble(),
            .residentMiB = words[3].toDouble()};
}

class Contender {
public:
    explicit Contender(const QString &program) : program_(program) {}

    void Start() {
        StartedProgram started(program_, {});
        stages_.push_back(ReadStage(started, "painted"));
    }
    void Forget() { stages_.clear(); }

    double Median(double Stage::*member) const {
        std::vector<double> values;
        for (const Stage &stage : stages_) {
            values.push_back(stage.*member);
        }
        return Measure::Median(values);
    }

private:
    QString program_;
    std::vector<Stage> stages_;
};

QString OurProgram() {
    return QStringLiteral(ZTV_BENCH_DIR "/ztv-bench-program");
}

void MeasureFirstPaint(Figures &figures) {
    Contender ours(OurProgram());
    Contender bare(QStringLiteral(ZTV_BENCH_DIR "/ztv-bench-bare"));
    ours.Start();
    bare.Start();
    ours.Forget();
    bare.Forget();
    for (int start = 0; start < starts; ++start) {
        ours.Start();
        bare.Start();
    }
    const auto add = [&](const QString &name, double Stage::*member, const QString &unit, double limit,
                         bool isTime) {
        const QString peer = QStringLiteral("bare Qt window");
        figures.Add({.name = name,
                     .value = ours.Median(member),
                     .unit = unit,
                     .limit = limit,
                     .peers = {{.name = peer, .value = bare.Median(member)}},
                     .against = isTime ? peer : QString()});
    };
    add(QStringLiteral("start to the first painted window"), &Stage::wallMs, QStringLiteral("ms"), startLimit,
        true);
    add(QStringLiteral("processor time of the start"), &Stage::processorMs, QStringLiteral("ms"), startLimit,
        true);
    add(QStringLiteral("resident memory after the start"), &Stage::residentMiB, QStringLiteral("MiB"),
        memoryLimitMiB, false);
}

void MeasureMemoryOfPoll(Figures &figures) {
    const SensorProcess sensor;
    qputenv("ZTVLINK_PORT_1", sensor.Device().toLocal8Bit());
    StartedProgram program(OurProgram(), {QString::number(pollMs)});
    const Stage painted = ReadStage(program, "painted");
    const Stage polled = ReadStage(program, "polled");
    const QString ofPolling = QStringLiteral(" of %1 s of polling").arg(pollMs / 1000);
    figures.Add({.name = QStringLiteral("resident memory at the end") + ofPolling,
                 .value = polled.residentMiB,
                 .unit = QStringLiteral("MiB"),
                 .limit = memoryLimitMiB,
                 .peers = {}});
    figures.Add({.name = QStringLiteral("processor load") + ofPolling + QStringLiteral(", Basic tab"),
                 .value = 100 * (polled.processorMs - painted.processorMs) / (polled.wallMs - painted.wallMs),
                 .unit = QStringLiteral("%"),
                 .limit = loadLimit,
                 .peers = {PlainLabels::AsPeer(PlainLabels().ProcessorMs() * 100 / pollPeriodMs)},
                 .against = PlainLabels::Name()});
}

double MsToMappedWindow(Display &display, const QString &program) {
    double start = 0;
    double mapped = 0;
    {
        const StartedProgram started(program, {});
        start = started.StartMs();
        mapped = display.WaitForWindow();
    }
    display.WaitForItsEnd();
    return mapped - start;
}

// Measures the shipped program and a serial terminal, both on a display server started for them.
void MeasureOnDisplay(Figures &figures) {
    const QString ours = QStringLiteral(ZTV_BIN_DIR "/ZtvLink");
    const QString theirs = QStandardPaths::findExecutable(QStringLiteral("cutecom"));
    if (theirs.isEmpty() || !Display::Available()) {
        return;
    }
    Display display;
    MsToMappedWindow(display, ours);
    MsToMappedWindow(display, theirs);
    std::vector<double> ourTimes;
    std::vector<double> theirTimes;
    for (int start = 0; start < starts; ++start) {
        ourTimes.push_back(MsToMappedWindow(display, ours));
        theirTimes.push_back(MsToMappedWindow(display, theirs));
    }
    figures.Add({.name = QStringLiteral("start to the first mapped window on a display"),
                 .value = Measure::Median(ourTimes),
                 .unit = QStringLiteral("ms"),
                 .limit = mappedLimit,
                 .peers = {{.name = QStringLiteral("cutecom"), .value = Measure::Median(theirTimes)}},
                 .against = QStringLiteral("cutecom")});
}

} // namespace

void MeasureStartUp(Figures &figures) {
    MeasureFirstPaint(figures);
    MeasureMemoryOfPoll(figures);
    MeasureOnDisplay(figures);
}

} // namespace ztv

#include "bench/Flash.h"

#include "bench/StartedProgram.h"
#include "tools/SensorProcess.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <cstdio>
#include <stdexcept>

namespace ztv {

namespace {

constexpr double bitsPerSecond = 38400;
constexpr int bitsPerCharacter = 10;
constexpr double msPerSecond = 1000;
constexpr double mostTimesTheLine = 1.05;

struct Transfer {
    qsizetype bytes = 0;
    double firstMs = 0;
    double lastMs = 0;
};

// Returns the frames from the first question for the loader's version to the reset. A line of the log is the
// time in milliseconds, the direction, and the bytes.
Transfer ReadLog(const QString &fileName) {
    QFile log(fileName);
    if (!log.open(QFile::ReadOnly)) {
        throw std::runtime_error("the simulated sensor has no log");
    }
    constexpr qsizetype wordsBefore = 2;
    Transfer transfer;
    while (!log.atEnd()) {
        const QByteArray line = log.readLine().trimmed();
        const QList<QByteArray> words = line.split(' ');
        if (transfer.bytes == 0 && !line.endsWith("rx 0f 0f 00 02 fe 04")) {
            continue;
        }
        const double timeMs = words.first().toDouble();
        transfer.firstMs = transfer.bytes == 0 ? timeMs : transfer.firstMs;
        transfer.bytes += words.size() - wordsBefore;
        transfer.lastMs = timeMs;
        if (line.endsWith("rx 0f 0f 00 00 00 04")) {
            return transfer;
        }
    }
    throw std::runtime_error("the command didn't restart the sensor");
}

} // namespace

void MeasureFlash(Figures &figures) {
    const QTemporaryDir folder;
    const QString firmware = folder.filePath(QStringLiteral("firmware.hex"));
    const QString log = folder.filePath(QStringLiteral("log"));
    QProcess::execute(QStringLiteral(ZTV_BIN_DIR "/ztv-sim"), {QStringLiteral("--make-firmware"), firmware});
    const SensorProcess sensor(
        {QStringLiteral("--boot"), QStringLiteral("--pace"), QStringLiteral("--log"), log});
    StartedProgram command(QStringLiteral(ZTV_BIN_DIR "/ztv-ctl"),
                           {QStringLiteral("--port"), sensor.Device(), QStringLiteral("flash"),
                            QStringLiteral("--yes"), QStringLiteral("--quiet"), firmware});
    const double wholeMs = command.WaitForEnd() - command.StartMs();
    const Transfer transfer = ReadLog(log);
    const double lineMs =
        static_cast<double>(transfer.bytes) * bitsPerCharacter * msPerSecond / bitsPerSecond;
    std::printf("ztv-ctl flash took %.1f s, of which %.1f s at least are the line's\n", wholeMs / msPerSecond,
                lineMs / msPerSecond);
    figures.Add({.name = QStringLiteral("ztv-ctl flash of the whole application at 38400 baud"),
                 .value = (transfer.lastMs - transfer.firstMs) / lineMs,
                 .unit = QStringLiteral("times the line's time"),
                 .limit = mostTimesTheLine,
                 .peers = {}});
}

} // namespace ztv

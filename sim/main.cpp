#include "sim/DeviceMemory.h"
#include "sim/FirmwareImage.h"
#include "sim/LineReader.h"
#include "sim/OptionsParser.h"
#include "sim/SimulatedSensor.h"
#include "sim/StopSignals.h"
#include "sim/WholeFile.h"

#include <QCoreApplication>

#include <cstdio>

#include <unistd.h>

namespace {

constexpr int wrongUsage = 2;
constexpr int failed = 1;

void Print(std::FILE *stream, const QString &text) {
    std::fputs(text.toLocal8Bit().constData(), stream);
    std::fflush(stream);
}

// For a person, who wants to paste it. A program reads the first line only.
QString HowToReach(const sim::SimulatedSensor &sensor) {
    const sim::LineSettings &line = sensor.Line();
    return QStringLiteral("try: ztv-ctl --port %1 --address %2 --baud %3 --parity %4 get\n")
        .arg(sensor.Path())
        .arg(line.address)
        .arg(line.BitsPerSecond())
        .arg(line.ParityText());
}

int MakeFirmware(const QString &fileName) {
    const QString error = sim::WriteWholeFile(
        fileName, sim::HexFile(sim::DeviceMemory::applicationStart,
                               sim::Application(sim::upgradeVersion, sim::DeviceMemory::applicationSize)));
    if (!error.isEmpty()) {
        Print(stderr, QStringLiteral("ztv-sim: %1\n").arg(error));
        return failed;
    }
    Print(stdout, QStringLiteral("wrote %1, firmware version %2\n")
                      .arg(fileName, QString::number(sim::upgradeVersion / 100.0, 'f', 2)));
    return 0;
}

} // namespace

int main(int argc, char *argv[]) {
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("ztv-sim"));
    QCoreApplication::setApplicationVersion(QStringLiteral(ZTV_VERSION));

    const sim::ParsedOptions parsed = sim::ParseOptions(QCoreApplication::arguments());
    if (!parsed.error.isEmpty()) {
        Print(stderr, QStringLiteral("ztv-sim: %1\n").arg(parsed.error));
        return wrongUsage;
    }
    if (!parsed.text.isEmpty()) {
        Print(stdout, parsed.text);
        return 0;
    }

    if (!parsed.firmware.isEmpty()) {
        return MakeFirmware(parsed.firmware);
    }

    const sim::StopSignals stop([] { QCoreApplication::quit(); });
    sim::SimulatedSensor sensor(parsed.options);
    QString error = sensor.Start();
    if (!error.isEmpty()) {
        Print(stderr, QStringLiteral("ztv-sim: %1\n").arg(error));
        return failed;
    }
    Print(stdout, QStringLiteral("port %1\n").arg(sensor.Path()));
    if (isatty(STDOUT_FILENO) != 0) {
        Print(stdout, HowToReach(sensor));
    }

    const sim::LineReader commands(STDIN_FILENO, [&sensor](const QByteArray &bytes) {
        const QString line = QString::fromUtf8(bytes).trimmed();
        const QString reply = sensor.Execute(line);
        if (!reply.isEmpty()) {
            Print(stdout, reply + QLatin1Char('\n'));
        }
        if (line == QLatin1String("quit")) {
            QCoreApplication::quit();
        }
    });
    QCoreApplication::exec();
    error = sensor.SaveFlash();
    if (!error.isEmpty()) {
        Print(stderr, QStringLiteral("ztv-sim: %1\n").arg(error));
        return failed;
    }
    return 0;
}

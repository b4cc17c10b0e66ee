#include "tools/SensorProcess.h"

#include <stdexcept>

namespace ztv {

namespace {

constexpr int longestMs = 10000;

} // namespace

SensorProcess::SensorProcess(const QStringList &options) {
    process_.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process_.start(QStringLiteral(ZTV_BIN_DIR "/ztv-sim"),
                   QStringList{QStringLiteral("--link"), Device()} + options);
    if (!process_.waitForReadyRead(longestMs) || !process_.readLine().startsWith("port ")) {
        throw std::runtime_error("the simulated sensor doesn't start");
    }
}

SensorProcess::~SensorProcess() {
    process_.terminate();
    process_.waitForFinished();
}

QString SensorProcess::Command(const QString &line) {
    // Most commands print nothing, so sends an unknown one as well: its error message shows that the command
    // before it is done.
    constexpr char mark[] = "error: unknown command end\n";
    process_.write(line.toUtf8() + "\nend\n");
    QByteArray printed;
    while (!printed.endsWith(mark)) {
        if (!process_.waitForReadyRead(longestMs)) {
            throw std::runtime_error("the simulated sensor doesn't obey");
        }
        printed += process_.readAllStandardOutput();
    }
    return QString::fromUtf8(printed.chopped(sizeof mark - 1)).trimmed();
}

} // namespace ztv

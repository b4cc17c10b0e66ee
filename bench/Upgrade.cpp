#include "bench/Upgrade.h"

#include "bench/Measure.h"
#include "firmware/SerialBootLine.h"
#include "firmware/ui/FormUpgradeFirmware.h"
#include "shell/LinkNotices.h"
#include "tools/NoHelp.h"
#include "tools/PrintedDialogs.h"
#include "tools/SensorProcess.h"

#include <QCoreApplication>
#include <QDir>
#include <QEventLoop>
#include <QProcess>
#include <QPushButton>
#include <QTemporaryDir>
#include <cstdio>
#include <stdexcept>

namespace ztv {

namespace {

constexpr int bitsPerSecond = 38400;
constexpr int bitsPerCharacter = 10;
constexpr double mostTimesTheLine = 1.05;

struct Traffic {
    qint64 bytes = 0;
    double firstMs = 0; // when the first byte was sent
    double lastMs = 0;  // when the last byte arrived
};

// Counts the bytes of a real line.
class CountedLine : public BootLine {
public:
    CountedLine(std::unique_ptr<BootLine> line, Traffic &traffic)
        : line_(std::move(line)),
          traffic_(traffic) {}

    void ClearInput() override { line_->ClearInput(); }
    bool Write(const QByteArray &bytes) override {
        if (traffic_.bytes == 0) {
            traffic_.firstMs = Measure::NowMs();
        }
        traffic_.bytes += bytes.size();
        return line_->Write(bytes);
    }
    std::optional<QByteArray> Read(int milliseconds) override {
        std::optional<QByteArray> bytes = line_->Read(milliseconds);
        traffic_.bytes += bytes ? bytes->size() : 0;
        traffic_.lastMs = Measure::NowMs();
        return bytes;
    }

private:
    std::unique_ptr<BootLine> line_;
    Traffic &traffic_;
};

class LastDialog : public PrintedDialogs {
public:
    BoxAnswer OwnedMessageBox(const QString &text, BoxStyle style, const QString &title) override {
        last = text;
        return PrintedDialogs::OwnedMessageBox(text, style, title);
    }

    QString last;
};

void MakeFirmware(const QString &folder) {
    QDir(folder).mkdir(QStringLiteral("Firmware"));
    QProcess maker;
    maker.start(QStringLiteral(ZTV_BIN_DIR "/ztv-sim"),
                {QStringLiteral("--make-firmware"), folder + QStringLiteral("/Firmware/B70214.hex")});
    maker.waitForFinished();
}

} // namespace

void MeasureUpgrade(Figures &figures) {
    const QTemporaryDir home;
    MakeFirmware(home.path());
    const SensorProcess sensor({QStringLiteral("--boot"), QStringLiteral("--pace")});
    Traffic traffic;
    BootComm boot([&](const QByteArray &, std::int32_t bitRate) -> std::unique_ptr<BootLine> {
        auto line = SerialBootLine::Open(sensor.Device(), bitRate);
        return line ? std::make_unique<CountedLine>(std::move(line), traffic) : nullptr;
    });
    LastDialog dialogs;
    ClassZentrova zentrova(QStringLiteral(ZTV_BIN_DIR));
    LinkSession link(zentrova, {.deviceOfPort = [&sensor](std::int16_t) { return sensor.Device(); },
                                .askDirection = [] { return ConnectChoice::Cancel; }});
    LinkNotices notices{link, dialogs};
    NoHelp engine;
    ClassMyHtmlHelp help(engine, dialogs);
    FormUpgradeFirmware form({.bootComm = boot,
                              .link = link,
                              .zentrova = zentrova,
                              .dialogs = dialogs,
                              .help = help,
                              .programFolder = home.path(),
                              .showInEditor = [](auto &, auto &) { return true; }});
    form.show();
    auto *button = form.findChild<QPushButton *>(QStringLiteral("CommandUpgradeFirmware"));
    button->click();
    do {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    } while (!button->isEnabled());
    if (dialogs.last != QStringLiteral("Firmware has been sucessfully upgraded!")) {
        throw std::runtime_error("the upgrade failed");
    }
    constexpr double msPerSecond = 1000;
    const double lineMs = static_cast<double>(traffic.bytes) * bitsPerCharacter * msPerSecond / bitsPerSecond;
    const double tookMs = traffic.lastMs - traffic.firstMs;
    std::printf("the upgrade took %.1f s\n", tookMs / msPerSecond);
    figures.Add({.name = QStringLiteral("upgrade of the whole application at 38400 baud"),
                 .value = tookMs / lineMs,
                 .unit = QStringLiteral("times the line's time"),
                 .limit = mostTimesTheLine,
                 .peers = {}});
}

} // namespace ztv

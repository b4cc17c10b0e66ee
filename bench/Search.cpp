#include "bench/Search.h"

#include "bench/Measure.h"
#include "link/ui/FormSearch.h"
#include "shell/LinkNotices.h"
#include "support/ProgramFolder.h"
#include "tools/NoHelp.h"
#include "tools/PrintedDialogs.h"
#include "tools/SensorProcess.h"

#include <QEventLoop>
#include <QPushButton>
#include <QTimer>
#include <stdexcept>

namespace ztv {

namespace {

constexpr double limitRatio = 1.05;
constexpr int addresses = 247;
constexpr double requestBits = 8 * 11.0;
constexpr double bitsPerMs = 38.4;
constexpr double timeoutMs = 30;
constexpr double leastMs = addresses * (requestBits / bitsPerMs + timeoutMs);
constexpr SearchStart start{.port = 1, .baud = 4, .parityStop = 1};
constexpr int patienceMs = 60000;

} // namespace

void MeasureSearch(Figures &figures) {
    // At another baud rate than the search's: the sensor understands no probe.
    const SensorProcess sensor({QStringLiteral("--baud"), QStringLiteral("2400")});
    PrintedDialogs dialogs;
    ClassZentrova zentrova(ProgramFolder());
    LinkSession link(zentrova, {.deviceOfPort = [&](std::int16_t) { return sensor.Device(); },
                                .askDirection = [] { return ConnectChoice::Cancel; }});
    LinkNotices notices{link, dialogs};
    NoHelp engine;
    ClassMyHtmlHelp help(engine, dialogs);
    FormSearch form(link, zentrova, dialogs, help, start);
    form.show();

    QEventLoop loop;
    int answers = 0;
    QObject::connect(&link, &LinkSession::DeviceAnswered, &loop, [&] {
        ++answers;
        if (!link.PortIsOpen()) {
            loop.quit();
        }
    });
    QTimer::singleShot(patienceMs, &loop, &QEventLoop::quit);
    const double begin = Measure::NowMs();
    form.findChild<QPushButton *>(QStringLiteral("CommandStart"))->click();
    loop.exec();
    const double took = Measure::NowMs() - begin;
    if (answers != addresses) {
        throw std::runtime_error("the search doesn't try every address");
    }
    figures.Add({.name = QStringLiteral("search of %1 silent addresses as a multiple of their line times and "
                                        "timeouts")
                             .arg(addresses),
                 .value = took / leastMs,
                 .unit = QStringLiteral("times"),
                 .limit = limitRatio,
                 .peers = {}});
}

} // namespace ztv

#include "bench/PollLoad.h"

#include "bench/Measure.h"
#include "bench/PlainLabels.h"
#include "chart/ui/BasicPage.h"
#include "link/LinkSession.h"
#include "model/ClassZentrova.h"
#include "model/ParamDefines.h"
#include "model/ValueState.h"
#include "shell/FormMain.h"
#include "support/ApplicationTitle.h"
#include "support/ProgramFolder.h"
#include "support/SettingsStore.h"
#include "tabs/TabTable.h"
#include "tools/NoHelp.h"
#include "tools/PrintedDialogs.h"
#include "tools/SensorProcess.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QSize>
#include <QTabWidget>
#include <QTimer>
#include <cstdio>
#include <stdexcept>

namespace ztv {

namespace {

// Limits as multiples of the plain labels' time.
constexpr double pollLimit = 1.5;
constexpr double pollLimitOfLargePage = 3;
constexpr double resizeLimit = 25;
constexpr double tickLimit = 1;
constexpr double loadLimit = 5;
constexpr QSize largeForm(1920, 1080);
constexpr int resizes = 60;
constexpr int ticks = 200;
constexpr int warmUpPolls = 5; // per tab: the first polls draw the whole tab
constexpr int polls = 20;
constexpr int loadMs = 8000;
constexpr int periodMs = 200;
constexpr int patienceMs = 30000;

// The processor time of `count` polls, each displayed and painted.
double ProcessorMsOfPolls(LinkSession &link, int count) {
    QEventLoop loop;
    double start = 0;
    double end = 0;
    int seen = 0;
    QObject::connect(&link, &LinkSession::TableRefreshed, &loop, [&] {
        if (seen == 0) {
            start = Measure::ProcessorMs();
        } else if (seen == count) {
            end = Measure::ProcessorMs();
            loop.quit();
        }
        ++seen;
    });
    QTimer::singleShot(patienceMs, &loop, &QEventLoop::quit);
    loop.exec();
    if (seen <= count) {
        throw std::runtime_error("the poll stands still");
    }
    return end - start;
}

// Runs ticks of the animation; each moves all values and paints what moved.
double ProcessorMsOfATick(FormMain &form) {
    auto &page = dynamic_cast<BasicPage &>(*form.findChild<QWidget *>(QStringLiteral("TabFrame(1)")));
    page.ShowState(ValueState::Live); // the pulse of other values rests
    form.Zentrova().ParamUpdate(ParamDefines::EchoReceived, ParamDefines::EchoPresent);
    const double start = Measure::ProcessorMs();
    for (int tick = 0; tick < ticks; ++tick) {
        form.Zentrova().ParamUpdate(ParamDefines::ActualDistance, 1000 + tick * 200);
        form.Zentrova().ParamUpdate(ParamDefines::OutputVoltage, 100 + tick * 4);
        page.UpdateGraph();
        QCoreApplication::processEvents();
    }
    return (Measure::ProcessorMs() - start) / ticks;
}

// Resizes the form by a few pixels at a time, as the mouse does, and paints each size.
double ProcessorMsOfAResize(FormMain &form) {
    const QSize before = form.size();
    const double start = Measure::ProcessorMs();
    for (int step = 1; step <= resizes; ++step) {
        form.resize(before + QSize(5, 4) * step);
        QCoreApplication::processEvents();
    }
    const double spent = Measure::ProcessorMs() - start;
    form.resize(before);
    QCoreApplication::processEvents();
    return spent / resizes;
}

// Adds the figures of a poll on each tab, in a form of its present size. `place` says that size.
void MeasureTabs(Figures &figures, FormMain &form, PlainLabels &labels, const QString &place, double limit) {
    auto *animation = form.findChild<QTimer *>(QStringLiteral("Timer1"), Qt::FindDirectChildrenOnly);
    auto *strip = form.findChild<QTabWidget *>(QStringLiteral("TabStrip1"));
    for (int index = 0; index < strip->count(); ++index) {
        strip->setCurrentIndex(index);
        animation->stop(); // measured separately
        ProcessorMsOfPolls(form.Link(), warmUpPolls);
        const QString tab = QString::fromLatin1(Tab::Table[static_cast<std::size_t>(index)].key);
        figures.Add({.name = QStringLiteral("processor time of a poll on the %1 tab%2").arg(tab, place),
                     .value = ProcessorMsOfPolls(form.Link(), polls) / polls,
                     .unit = QStringLiteral("ms"),
                     .limit = limit,
                     .peers = {PlainLabels::AsPeer(labels.ProcessorMs())},
                     .against = PlainLabels::Name()});
    }
}

void MeasureResizes(Figures &figures, FormMain &form, PlainLabels &labels) {
    auto *strip = form.findChild<QTabWidget *>(QStringLiteral("TabStrip1"));
    for (int index = 0; index < strip->count(); ++index) {
        strip->setCurrentIndex(index);
        ProcessorMsOfAResize(form); // warm-up: loads the sizes of the font
        const QString tab = QString::fromLatin1(Tab::Table[static_cast<std::size_t>(index)].key);
        figures.Add({.name = QStringLiteral("processor time of another size of the %1 tab").arg(tab),
                     .value = ProcessorMsOfAResize(form),
                     .unit = QStringLiteral("ms"),
                     .limit = resizeLimit,
                     .peers = {PlainLabels::AsPeer(labels.ProcessorMs())},
                     .against = PlainLabels::Name()});
    }
}

double LoadPercent(LinkSession &link) {
    int seen = 0;
    const QMetaObject::Connection counter =
        QObject::connect(&link, &LinkSession::TableRefreshed, &link, [&seen] { ++seen; });
    const double wall = Measure::NowMs();
    const double processor = Measure::ProcessorMs();
    Measure::Idle(loadMs);
    const double load = (Measure::ProcessorMs() - processor) / (Measure::NowMs() - wall);
    QObject::disconnect(counter);
    if (seen < loadMs / periodMs * 9 / 10) {
        throw std::runtime_error("the poll is too slow for its load to count");
    }
    return load * 100;
}

} // namespace

void MeasurePollLoad(Figures &figures) {
    const SensorProcess sensor;
    qputenv("ZTVLINK_PORT_1", sensor.Device().toLocal8Bit());
    PrintedDialogs dialogs;
    SettingsStore settings(ApplicationTitle());
    NoHelp help;
    FormMain form({.dialogs = dialogs,
                   .settings = settings,
                   .helpEngine = help,
                   .programFolder = ProgramFolder(),
                   .arguments = {QStringLiteral("/CHECKOUT")},
                   .ctrlKeyIsDown = [] { return false; }});
    form.show();
    auto *animation = form.findChild<QTimer *>(QStringLiteral("Timer1"), Qt::FindDirectChildrenOnly);
    animation->stop();
    ProcessorMsOfATick(form); // warm-up
    PlainLabels labels;
    figures.Add({.name = QStringLiteral("processor time of a tick of the Basic tab's chart"),
                 .value = ProcessorMsOfATick(form),
                 .unit = QStringLiteral("ms"),
                 .limit = tickLimit,
                 .peers = {PlainLabels::AsPeer(labels.ProcessorMs())},
                 .against = PlainLabels::Name()});
    form.GoOnline(ConnectPrompt::Skip);

    MeasureTabs(figures, form, labels, {}, pollLimit);
    const QSize least = form.size();
    form.resize(largeForm);
    MeasureTabs(figures, form, labels,
                QStringLiteral(" at %1x%2").arg(largeForm.width()).arg(largeForm.height()),
                pollLimitOfLargePage);
    MeasureResizes(figures, form, labels);
    form.resize(least);
    auto *strip = form.findChild<QTabWidget *>(QStringLiteral("TabStrip1"));
    strip->setCurrentIndex(0);
    animation->start();
    ProcessorMsOfPolls(form.Link(), warmUpPolls);
    figures.Add(
        {.name = QStringLiteral("load of a poll each %1 ms and the animation of the Basic tab").arg(periodMs),
         .value = LoadPercent(form.Link()),
         .unit = QStringLiteral("%"),
         .limit = loadLimit,
         .peers = {PlainLabels::AsPeer(labels.ProcessorMs() * 100 / periodMs)}, // changed once a poll
         .against = PlainLabels::Name()});
    form.GoOffline();
}

} // namespace ztv

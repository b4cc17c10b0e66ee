#include "bench/ListRefresh.h"

#include "bench/Measure.h"
#include "bench/PlainLabels.h"
#include "model/ClassZentrova.h"
#include "shell/FormMain.h"
#include "support/ApplicationTitle.h"
#include "support/ProgramFolder.h"
#include "support/SettingsStore.h"
#include "tabs/TabTable.h"
#include "tools/NoHelp.h"
#include "tools/PrintedDialogs.h"

#include <QCoreApplication>
#include <QTabWidget>

namespace ztv {

namespace {

// Limits as multiples of the plain labels' time.
constexpr double unchangedLimit = 0.1;
constexpr double changedLimit = 1.5;
constexpr int warmUp = 20;
constexpr int rounds = 200;
constexpr int settleMs = 200;

// 0 and 1 are within every row's range. Their texts differ, except in a row that has only one text.
void ChangeAll(ClassZentrova &zentrova, int round) {
    for (std::int16_t tag = 1; tag < zentrova.ParamCount(); ++tag) {
        zentrova.ParamUpdate(tag, round % 2);
    }
}

} // namespace

void MeasureListRefresh(Figures &figures) {
    PrintedDialogs dialogs;
    SettingsStore settings(ApplicationTitle());
    NoHelp help;
    FormMain form({.dialogs = dialogs,
                   .settings = settings,
                   .helpEngine = help,
                   .programFolder = ProgramFolder(),
                   .arguments = {},
                   .ctrlKeyIsDown = [] { return false; }});
    form.show();
    form.findChild<QTabWidget *>(QStringLiteral("TabStrip1"))->setCurrentIndex(Tab::Advanced - 1);
    Measure::Idle(settleMs);

    std::vector<double> unchanged;
    std::vector<double> changed;
    std::vector<double> painted;
    for (int round = 0; round < warmUp + rounds; ++round) {
        ChangeAll(form.Zentrova(), round);
        const double start = Measure::NowMs();
        form.UpdateDisplay();
        const double refreshed = Measure::NowMs();
        QCoreApplication::processEvents();
        const double shown = Measure::NowMs();
        form.UpdateDisplay();
        const double again = Measure::NowMs();
        if (round >= warmUp) {
            changed.push_back(refreshed - start);
            painted.push_back(shown - start);
            unchanged.push_back(again - shown);
        }
    }
    const double plainMs = PlainLabels().WallMs();
    const auto add = [&figures, plainMs](const char *name, const std::vector<double> &values, double limit) {
        figures.Add({.name = QString::fromLatin1(name),
                     .value = Measure::Median(values),
                     .unit = QStringLiteral("ms"),
                     .limit = limit,
                     .peers = {PlainLabels::AsPeer(plainMs)},
                     .against = PlainLabels::Name()});
    };
    add("refresh of the Advanced list with no value changed", unchanged, unchangedLimit);
    add("refresh of the Advanced list with all values changed", changed, changedLimit);
    add("the same with the painting of those in sight", painted, changedLimit);
}

} // namespace ztv

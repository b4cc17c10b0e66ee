// Measures the program against its limits and its peers.

#include "bench/HexImport.h"
#include "bench/ListRefresh.h"
#include "bench/PollLoad.h"
#include "bench/RoundTrip.h"
#include "bench/Search.h"
#include "bench/StartUp.h"
#include "bench/Upgrade.h"
#include "shell/Application.h"

#include <QTemporaryDir>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>

namespace {

struct Group {
    const char *name;
    void (*measure)(Figures &);
};

constexpr std::array groups = {
    Group{"round-trip", MeasureRoundTrips}, Group{"poll", MeasurePollLoad},
    Group{"list", MeasureListRefresh},      Group{"search", MeasureSearch},
    Group{"start-up", MeasureStartUp},      Group{"hex", MeasureHexImport},
    Group{"upgrade", MeasureUpgrade},
};

constexpr int wrongUsage = 2;
constexpr int attempts = 3;

int Usage() {
    std::fprintf(
        stderr,
        "usage: ztv-bench [--check] [round-trip] [poll] [list] [search] [start-up] [hex] [upgrade]\n");
    return wrongUsage;
}

// The settings of whoever measures mustn't count.
void Isolate(const QTemporaryDir &settings) {
    qputenv("XDG_CONFIG_HOME", settings.path().toLocal8Bit());
    qputenv("XDG_DATA_HOME", settings.path().toLocal8Bit());
    qputenv("XDG_RUNTIME_DIR", settings.path().toLocal8Bit());
    qputenv("QT_LOGGING_RULES", "*.debug=false"); // a peer is talkative
    qputenv("ZTVLINK_HOME", ZTV_BIN_DIR);
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
}

// Measures again what passed a limit, so that a busy moment doesn't fail a check. True when all are kept.
bool Check(const Group &group) {
    Figures figures;
    for (int attempt = 0; attempt < attempts; ++attempt) {
        group.measure(figures);
        if (figures.Passed().empty()) {
            return true;
        }
    }
    for (const auto &[name, line] : figures.Passed()) {
        std::fprintf(stderr, "limit passed by %s\n", qPrintable(line));
    }
    return false;
}

int Run(const QStringList &words, bool check) {
    bool kept = true;
    for (const Group &group : groups) {
        if (!words.isEmpty() && !words.contains(QLatin1String(group.name))) {
            continue;
        }
        if (check) {
            kept = Check(group) && kept;
        } else {
            Figures figures;
            group.measure(figures);
        }
    }
    return kept ? EXIT_SUCCESS : EXIT_FAILURE;
}

bool Known(const QString &word) {
    for (const Group &group : groups) {
        if (word == QLatin1String(group.name)) {
            return true;
        }
    }
    return false;
}

} // namespace

int main(int argc, char *argv[]) {
    const QTemporaryDir settings;
    Isolate(settings);
    Application application(argc, argv);
    application.OnFault([](const Fault &fault) {
        std::fprintf(stderr, "fault: %s\n", qPrintable(fault.Description()));
        std::_Exit(EXIT_FAILURE);
    });
    QStringList words = QCoreApplication::arguments().mid(1);
    const bool check = words.removeAll(QStringLiteral("--check")) > 0;
    for (const QString &word : words) {
        if (!Known(word)) {
            return Usage();
        }
    }
    try {
        return Run(words, check);
    } catch (const std::exception &error) {
        std::fprintf(stderr, "ztv-bench: %s\n", error.what());
    }
    return EXIT_FAILURE;
}

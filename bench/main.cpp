// Measures the program against its limits and its peers.

#include "bench/Awake.h"
#include "bench/CommandLine.h"
#include "bench/Flash.h"
#include "bench/HexImport.h"
#include "bench/ListRefresh.h"
#include "bench/PollLoad.h"
#include "bench/RoundTrip.h"
#include "bench/Search.h"
#include "bench/StartUp.h"
#include "bench/Upgrade.h"
#include "shell/Application.h"

#include <QFile>
#include <QTemporaryDir>
#include <QThread>
#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <stdexcept>

namespace ztv {

namespace {

struct Group {
    const char *name;
    void (*measure)(Figures &);
};

constexpr std::array groups = {
    Group{"round-trip", MeasureRoundTrips},    Group{"poll", MeasurePollLoad},
    Group{"list", MeasureListRefresh},         Group{"search", MeasureSearch},
    Group{"start-up", MeasureStartUp},         Group{"hex", MeasureHexImport},
    Group{"upgrade", MeasureUpgrade},          Group{"flash", MeasureFlash},
    Group{"command-line", MeasureCommandLine},
};

constexpr int wrongUsage = 2;
constexpr int attempts = 3;

int Usage() {
    std::fprintf(
        stderr,
        "usage: ztv-bench [--check] [--awake] [--runs N] [--table FILE] [round-trip] [poll] [list] [search] "
        "[start-up] [hex] [upgrade] [flash] [command-line]\n");
    return wrongUsage;
}

// Replaces the user's own settings, which would influence the figures.
void Isolate(const QTemporaryDir &settings) {
    qputenv("XDG_CONFIG_HOME", settings.path().toLocal8Bit());
    qputenv("XDG_DATA_HOME", settings.path().toLocal8Bit());
    qputenv("XDG_RUNTIME_DIR", settings.path().toLocal8Bit());
    qputenv("QT_LOGGING_RULES", "*.debug=false"); // one peer logs every frame
    qputenv("ZTVLINK_HOME", ZTV_BIN_DIR);
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
}

// Repeats what exceeded a limit, so that a busy moment doesn't fail a check. Returns whether all limits are
// kept.
bool Check(const Group &group, QString &rows) {
    Figures figures;
    for (int attempt = 0; attempt < attempts; ++attempt) {
        group.measure(figures);
        if (figures.Passed().empty()) {
            break;
        }
    }
    rows += figures.Rows();
    for (const auto &[name, line] : figures.Passed()) {
        std::fprintf(stderr, "limit passed by %s\n", qPrintable(line));
    }
    return figures.Passed().empty();
}

int Run(const QStringList &words, bool check, int runs, QString &rows) {
    bool kept = true;
    for (const Group &group : groups) {
        if (!words.isEmpty() && !words.contains(QLatin1String(group.name))) {
            continue;
        }
        if (check) {
            kept = Check(group, rows) && kept;
        } else {
            Figures figures;
            for (int run = 0; run < runs; ++run) {
                group.measure(figures);
            }
            rows += figures.Rows();
        }
    }
    return kept ? EXIT_SUCCESS : EXIT_FAILURE;
}

bool WriteTable(const QString &fileName, const QString &rows) {
    QFile load(QStringLiteral("/proc/loadavg"));
    const QByteArray loads = load.open(QFile::ReadOnly) ? load.readAll().simplified() : QByteArray("?");
    QFile file(fileName);
    const QString text = Figures::Heads() + rows +
                         QStringLiteral("\n%1 processors, load at the end: %2\n")
                             .arg(QThread::idealThreadCount())
                             .arg(QString::fromLatin1(loads.split(' ').mid(0, 3).join(' ')));
    return file.open(QFile::WriteOnly) && file.write(text.toUtf8()) > 0;
}

bool Known(const QString &word) {
    for (const Group &group : groups) {
        if (word == QLatin1String(group.name)) {
            return true;
        }
    }
    return false;
}

// Removes an option and the word after it from `words` and returns that word; empty without the option.
QString TakeValue(QStringList &words, const QString &option) {
    const qsizetype at = words.indexOf(option);
    if (at < 0) {
        return {};
    }
    const QString value = words.value(at + 1);
    words.remove(at, std::min<qsizetype>(2, words.size() - at));
    return value;
}

} // namespace

} // namespace ztv

using namespace ztv;

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
    const std::unique_ptr<Awake> awake =
        words.removeAll(QStringLiteral("--awake")) > 0 ? std::make_unique<Awake>() : nullptr;
    const QString table = TakeValue(words, QStringLiteral("--table"));
    const QString runs = TakeValue(words, QStringLiteral("--runs"));
    for (const QString &word : words) {
        if (!Known(word)) {
            return Usage();
        }
    }
    try {
        QString rows;
        const int status = Run(words, check, std::max(runs.toInt(), 1), rows);
        return table.isEmpty() || WriteTable(table, rows) ? status : EXIT_FAILURE;
    } catch (const std::exception &error) {
        std::fprintf(stderr, "ztv-bench: %s\n", error.what());
    }
    return EXIT_FAILURE;
}

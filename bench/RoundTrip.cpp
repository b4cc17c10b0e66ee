#include "bench/RoundTrip.h"

#include "bench/Masters.h"
#include "bench/Measure.h"
#include "tools/SensorProcess.h"

#include <QEventLoop>
#include <QTimer>
#include <stdexcept>

namespace ztv {

namespace {

constexpr double backToBackLimit = 1; // times Qt's client, which also keeps the silent interval
constexpr double idleLimit = 1.5;     // times libmodbus
constexpr int idleLineMs = 4;         // longer than the silent interval

constexpr int rounds = 20;
constexpr int requestsPerRound = 15;
constexpr int warmUpRequests = 5; // per round: the first requests find cold caches

// Sends the requests of one round, each from the event loop or when the previous one ends.
class Round {
public:
    Round(Master &master, int idleMs) : master_(master), idleMs_(idleMs) {}

    std::vector<double> Run() {
        QTimer::singleShot(0, &loop_, [this] { Request(); });
        loop_.exec();
        if (failed_) {
            throw std::runtime_error(master_.Name().toStdString() + " gets no registers");
        }
        times_.erase(times_.begin(), times_.begin() + warmUpRequests);
        return times_;
    }

private:
    void Request() {
        const double start = Measure::NowMs();
        master_.Read([this, start](bool good) {
            times_.push_back(Measure::NowMs() - start);
            failed_ = failed_ || !good;
            Next();
        });
    }

    void Next() {
        if (failed_ || times_.size() == warmUpRequests + requestsPerRound) {
            loop_.quit();
        } else if (idleMs_ > 0) {
            QTimer::singleShot(idleMs_, Qt::PreciseTimer, &loop_, [this] { Request(); });
        } else {
            Request();
        }
    }

    Master &master_;
    int idleMs_;
    QEventLoop loop_;
    std::vector<double> times_;
    bool failed_ = false;
};

// The medians: the program's, libmodbus's, Qt's client's. The masters take turns, so that the machine's noise
// affects all alike.
std::vector<Peer> Medians(const QString &device, int idleMs) {
    const std::vector<std::unique_ptr<Master>> masters = AllMasters();
    std::vector<std::vector<double>> times(masters.size());
    for (int round = 0; round < rounds; ++round) {
        for (std::size_t index = 0; index < masters.size(); ++index) {
            Master &master = *masters[index];
            if (!master.Open(device)) {
                throw std::runtime_error(master.Name().toStdString() + " can't open the port");
            }
            const std::vector<double> some = Round(master, idleMs).Run();
            times[index].insert(times[index].end(), some.begin(), some.end());
            master.Close();
        }
    }
    std::vector<Peer> medians;
    for (std::size_t index = 0; index < masters.size(); ++index) {
        medians.push_back({.name = masters[index]->Name(), .value = Measure::Median(times[index])});
    }
    return medians;
}

} // namespace

void MeasureRoundTrips(Figures &figures) {
    const SensorProcess sensor;
    const std::vector<Peer> busy = Medians(sensor.Device(), 0);
    figures.Add({.name = QStringLiteral("round trip of 90 registers back to back"),
                 .value = busy[0].value,
                 .unit = QStringLiteral("ms"),
                 .limit = backToBackLimit,
                 .peers = {busy.begin() + 1, busy.end()},
                 .against = busy[2].name});
    const std::vector<Peer> idle = Medians(sensor.Device(), idleLineMs);
    figures.Add({.name = QStringLiteral("round trip of 90 registers on an idle line"),
                 .value = idle[0].value,
                 .unit = QStringLiteral("ms"),
                 .limit = idleLimit,
                 .peers = {idle.begin() + 1, idle.end()},
                 .against = idle[1].name});
}

} // namespace ztv

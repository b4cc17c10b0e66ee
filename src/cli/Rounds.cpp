#include "cli/Rounds.h"

#include "cli/Duration.h"
#include "cli/Interruption.h"
#include "model/CheckedAt.h"
#include "model/LineTables.h"
#include "support/TimeLeftText.h"

#include <QEventLoop>
#include <QTimer>
#include <algorithm>
#include <sys/stat.h>
#include <unistd.h>

#ifdef Q_OS_UNIX
#include <poll.h>
#endif

namespace ztv {

namespace {

using namespace std::chrono_literals;

// Within a longer period another sensor may take the place of one, without a reply being lost.
constexpr std::chrono::milliseconds noChangeOfSensor = 2s;

constexpr std::chrono::milliseconds longestSleep = 1s; // then the progress and the reader are looked at

bool GoToTheSameTerminal(std::FILE *one, std::FILE *other) {
    struct stat first = {};
    struct stat second = {};
    return isatty(fileno(one)) != 0 && fstat(fileno(one), &first) == 0 &&
           fstat(fileno(other), &second) == 0 && first.st_rdev == second.st_rdev;
}

// The next row would show that, too, but it may be a day away.
void ThrowIfReaderIsGone([[maybe_unused]] std::FILE *results) {
#ifdef Q_OS_UNIX
    pollfd state = {.fd = fileno(results), .events = 0, .revents = 0};
    if (poll(&state, 1, 0) > 0 && (state.revents & POLLERR) != 0) {
        throw ReaderGone();
    }
#endif
}

// For the event loop: each exchange of the line turns it, a sleep needs a loop of its own.
void Sleep(std::chrono::milliseconds time) {
    QEventLoop loop;
    if (const Interruption *interruption = Interruption::Present(); interruption != nullptr) {
        QObject::connect(interruption, &Interruption::Wanted, &loop, &QEventLoop::quit);
    }
    ThrowIfInterrupted();
    QTimer::singleShot(time, Qt::PreciseTimer, &loop, &QEventLoop::quit);
    loop.exec();
    ThrowIfInterrupted();
}

Failure NeverAnswered(const PolledSensor &sensor) {
    if (sensor.Counts().requests == 0) {
        return {ExitStatus::NoConnection,
                QStringLiteral("address %1: ended before a reply was due").arg(sensor.Address())};
    }
    const LinkStatus status = sensor.LastFailure();
    return {status <= LastException ? ExitStatus::Refused : ExitStatus::NoConnection,
            QStringLiteral("address %1: no good reply, but: %2")
                .arg(sensor.Address())
                .arg(MbaxpErrorDesc(status))};
}

} // namespace

Rounds::Rounds(CommandRun &run, const std::vector<std::int16_t> &tags)
    : run_(run),
      usualPeriod_(CheckedAt(BaudTable, run.Comm().baud, "PollPeriodByBaud").pollPeriodMs),
      showsProgress_(!GoToTheSameTerminal(run.Results(), run.Messages())) {
    period_ = run.Given().everyMs ? std::chrono::milliseconds(*run.Given().everyMs) : usualPeriod_;
    if (!run.Given().forTime.isEmpty()) {
        duration_ = DurationOf(run.Given().forTime);
    }
    for (const std::int16_t address : run.Addresses()) {
        sensors_.emplace_back(address, tags);
    }
}

ExitStatus Rounds::Run(const Handler &handler) {
    const std::unique_ptr<SensorLine> line = run_.OpenLine();
    start_ = Clock::now();
    due_ = start_;
    try {
        RunUntilEnd(*line, handler);
    } catch (const Interrupted &) { // the usual end without a time
    }
    const ExitStatus status = SumUp();
    if (status == ExitStatus::NoConnection && !line->HasAnswered()) {
        run_.RemarkOnStoredPort();
    }
    return status;
}

void Rounds::RunUntilEnd(SensorLine &line, const Handler &handler) {
    do {
        RunRound(line, handler);
        ++rounds_;
        ShowProgress();
    } while (AwaitNextRound());
}

void Rounds::RunRound(SensorLine &line, const Handler &handler) {
    for (PolledSensor &sensor : sensors_) {
        if (period_ > noChangeOfSensor) {
            sensor.ForgetAddressingMode();
        }
        const PolledSensor::Reading reading = sensor.Read(line);
        handler(sensor, reading);
    }
}

// Waits for the start of the next round. Returns false if the time is over before.
bool Rounds::AwaitNextRound() {
    const Clock::time_point now = Clock::now();
    const bool deviceIsGone = std::ranges::any_of(sensors_, &PolledSensor::DeviceIsGone);
    // Without its device a round takes no time at all.
    due_ = std::max(due_ + (deviceIsGone ? std::max(period_, usualPeriod_) : period_), now);
    if (duration_ && due_ >= start_ + *duration_) {
        SleepUntil(start_ + *duration_);
        return false;
    }
    SleepUntil(due_);
    return true;
}

void Rounds::SleepUntil(Clock::time_point time) {
    for (Clock::time_point now = Clock::now(); now < time; now = Clock::now()) {
        Sleep(std::min(std::chrono::ceil<std::chrono::milliseconds>(time - now), longestSleep));
        ThrowIfReaderIsGone(run_.Results());
        ShowProgress();
    }
    ThrowIfInterrupted();
}

void Rounds::ShowProgress() {
    if (duration_ && showsProgress_) {
        const std::chrono::duration<double, std::milli> left = start_ + *duration_ - Clock::now();
        run_.Person().Progress(
            QStringLiteral("%1 rounds, %2").arg(rounds_).arg(TimeLeftText(std::max(left.count(), 0.0))));
    }
}

ExitStatus Rounds::SumUp() {
    RemarkCounts();
    ExitStatus status = ExitStatus::Done;
    for (const PolledSensor &sensor : sensors_) {
        if (sensor.Counts().good == 0) {
            const Failure failure = NeverAnswered(sensor);
            run_.Person().Fail(failure.Text());
            status = status == ExitStatus::Done ? failure.Status() : status;
        }
    }
    return status;
}

void Rounds::RemarkCounts() {
    ReplyCounts counts;
    for (const PolledSensor &sensor : sensors_) {
        counts += sensor.Counts();
    }
    const std::chrono::duration<double> took = Clock::now() - start_;
    QString text = QStringLiteral("%1 rounds, %2 of %3 replies lost (%4 damaged)")
                       .arg(rounds_)
                       .arg(counts.lost)
                       .arg(counts.requests)
                       .arg(counts.damaged);
    if (counts.refused > 0) {
        text += QStringLiteral(", %1 refused").arg(counts.refused);
    }
    run_.Person().Remark(
        text +
        QStringLiteral(", %1 rounds a second").arg(static_cast<double>(rounds_) / took.count(), 0, 'f', 2));
}

} // namespace ztv

#include "cli/Commands.h"
#include "cli/Interruption.h"
#include "link/DeviceSearch.h"
#include "model/LineTables.h"
#include "support/TimeLeftText.h"

#include <QEventLoop>
#include <cstddef>
#include <exception>

namespace ztv {

namespace {

constexpr qsizetype baudWidth = 5;
constexpr qsizetype addressWidth = 7;

const BaudRow &BaudOf(std::int16_t index) {
    return BaudTable.at(static_cast<std::size_t>(index));
}

QString ParityText(std::int16_t index) {
    return QString::fromLatin1(ParityStopTable.at(static_cast<std::size_t>(index)).text);
}

void CheckArguments(const Arguments &given) {
    if (!given.addresses.empty()) {
        throw Failure(ExitStatus::WrongUse,
                      QStringLiteral("search has no --address; use --from and --to for its range"));
    }
    if (given.from > given.to) {
        throw Failure(ExitStatus::WrongUse,
                      QStringLiteral("--from %1 is above --to %2; give the lower address first")
                          .arg(given.from)
                          .arg(given.to));
    }
}

// One run of the search. What the handlers meet is thrown when the search is over: an exception mustn't pass
// through the event loop.
class SearchRun {
public:
    explicit SearchRun(CommandRun &run)
        : run_(run),
          link_(run.Zentrova(), {.deviceOfPort = [&run](std::int16_t) { return run.Device(); },
                                 .askDirection = [] { return ConnectChoice::Cancel; }}),
          search_(link_, run.Comm(), ChoicesOf(run.Given())),
          report_(run.Format(), Columns(), run.Results(), Report::JsonLayout::Lines) {
        QObject::connect(&search_, &DeviceSearch::DeviceFound, &loop_,
                         [this](const CommSettings &place) { Print(place); });
        QObject::connect(&search_, &DeviceSearch::Progressed, &loop_,
                         [this](int, const SearchWork &left) { ShowProgress(left); });
        QObject::connect(&search_, &DeviceSearch::BrokenOff, &loop_, [this](LinkStatus status) {
            brokenOff_ = status;
            loop_.quit();
        });
        QObject::connect(&search_, &DeviceSearch::Ended, &loop_, &QEventLoop::quit);
        if (const Interruption *interruption = Interruption::Present(); interruption != nullptr) {
            QObject::connect(interruption, &Interruption::Wanted, &loop_, [this] { search_.Stop(); });
        }
        run.Watch(link_.Mbaxp1().Tap());
    }

    void RunToEnd() {
        ThrowIfInterrupted();
        if (!search_.Start()) {
            throw run_.PortFailure();
        }
        report_.NameColumns();
        loop_.exec();
        run_.Person().EndProgress();
        ThrowOutcome();
    }

private:
    static DeviceSearch::Choices ChoicesOf(const Arguments &given) {
        return {.addressRange =
                    [&given] {
                        return DeviceSearch::AddressRange{.bottom = static_cast<std::int16_t>(given.from),
                                                          .top = static_cast<std::int16_t>(given.to)};
                    },
                .varyCommSettings = [&given] { return given.allSettings; },
                .timeoutMs = static_cast<std::int16_t>(given.timeoutMs)};
    }

    static std::vector<Report::Column> Columns() {
        return {{.key = QStringLiteral("address"), .width = addressWidth},
                {.key = QStringLiteral("baud"), .width = baudWidth},
                {.key = QStringLiteral("parity")}};
    }

    void Print(const CommSettings &place) {
        try {
            run_.Person().EndProgress();
            report_.Add({CellOf(place.address), CellOf(BaudOf(place.baud).bitsPerSecond),
                         CellOf(ParityText(place.parityStop))});
        } catch (...) {
            failure_ = std::current_exception();
            search_.Stop();
        }
    }

    void ShowProgress(const SearchWork &left) {
        run_.Person().Progress(QStringLiteral("address %1 at %2 %3, %4 found, %5")
                                   .arg(search_.SearchAddress())
                                   .arg(BaudOf(search_.SearchBaud()).bitsPerSecond)
                                   .arg(ParityText(search_.SearchParityStop()))
                                   .arg(search_.DevicesFound())
                                   .arg(TimeLeftText(left.milliseconds)));
    }

    void ThrowOutcome() {
        if (failure_) {
            std::rethrow_exception(failure_);
        }
        if (brokenOff_) {
            throw Failure(ExitStatus::NoConnection,
                          QStringLiteral("address %1 at %2 %3: %4")
                              .arg(search_.SearchAddress())
                              .arg(BaudOf(search_.SearchBaud()).bitsPerSecond)
                              .arg(ParityText(search_.SearchParityStop()), MbaxpErrorDesc(*brokenOff_)));
        }
        ThrowIfInterrupted();
        if (search_.DevicesFound() == 0) {
            throw Failure(ExitStatus::NoConnection,
                          QStringLiteral("No sensor answered on %1").arg(run_.Device()));
        }
    }

    CommandRun &run_;
    LinkSession link_;
    DeviceSearch search_;
    Report report_;
    QEventLoop loop_;
    std::optional<LinkStatus> brokenOff_;
    std::exception_ptr failure_;
};

} // namespace

ExitStatus Search(CommandRun &run) {
    CheckArguments(run.Given());
    SearchRun(run).RunToEnd();
    return ExitStatus::Done;
}

} // namespace ztv

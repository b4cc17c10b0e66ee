#include "cli/Commands.h"
#include "cli/FirmwarePlan.h"
#include "cli/Interruption.h"
#include "cli/SensorUpgrade.h"
#include "cli/UpgradeWords.h"
#include "firmware/MemoryImageLine.h"
#include "model/ParamDefines.h"

#include <QEventLoop>
#include <QJsonArray>
#include <QScopeGuard>
#include <QTimer>
#include <optional>

namespace ztv {

namespace {

constexpr int triesAfterRestart = 5;
constexpr int pauseAfterRestartMs = 500;
constexpr qsizetype versionWidth = 6;
constexpr qsizetype imageAddressWidth = 8;

struct Identity {
    std::int32_t serial;
    QString version;
};

struct Target {
    std::int16_t address;
    std::optional<Identity> found; // none: in its boot loader, which tells neither
};

SensorState StateBefore(const Target &target) {
    return target.found ? SensorState::Unchanged : SensorState::InLoader;
}

Report::Cell CellOfVersion(const std::optional<Identity> &identity) {
    return identity ? CellOf(identity->version) : Report::Cell{};
}

Report::Cell CellOfSerial(const std::optional<Identity> &identity) {
    return identity ? CellOf(identity->serial) : Report::Cell{};
}

Identity ReadIdentity(CommandRun &run, SensorLine &line, std::int16_t address) {
    const SensorLine::Values values =
        line.Read(address, {ParamDefines::SerialNumber, ParamDefines::FirmwareVersion});
    return {.serial = values.at(ParamDefines::SerialNumber),
            .version = run.Zentrova().FormatRaw(values.at(ParamDefines::FirmwareVersion),
                                                ParamDefines::FirmwareVersion)};
}

void TurnEventLoopFor(int milliseconds) {
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    if (const Interruption *interruption = Interruption::Present()) {
        QObject::connect(interruption, &Interruption::Wanted, &loop, &QEventLoop::quit);
    }
    loop.exec();
}

// One run of the command: looks at all sensors, asks once, then replaces the firmware of one after the other.
class FlashRun {
public:
    explicit FlashRun(CommandRun &run) : run_(run), plan_(PlanOf(run.Given().files.constFirst())) {}

    ExitStatus Run();

private:
    void LookAtSensors();
    void LookForLoader(const Failure &silence);
    void ReportPlan();
    QString Question() const;
    void FlashAll();
    bool FlashOne(const Target &target);
    void NameDifferences(const Target &target, const UpgradeResult &result);
    bool Confirm(const Target &target, const UpgradeResult &result);
    Identity ReadAfterRestart(const Target &target);
    void AddRow(const Target &target, const std::optional<Identity> &after, const QStringList &differing);
    void ReportSensors();

    bool Several() const { return run_.Addresses().size() > 1; }
    QString Named(const Target &target) const;
    QString Again(std::int16_t address) const;
    void Fail(const Target &target, ExitStatus status, const QString &text);
    void NameUndone(std::size_t from);

    CommandRun &run_;
    FirmwarePlan plan_;
    std::vector<Target> targets_;
    std::vector<Report::Row> rows_;
    ExitStatus status_ = ExitStatus::Done;
};

ExitStatus FlashRun::Run() {
    try {
        LookAtSensors();
        if (run_.Given().dryRun) {
            ReportPlan();
            return status_;
        }
        if (!run_.Given().yes && !targets_.empty()) {
            run_.Person().AskToGoOn(Question());
        }
    } catch (const Interrupted &) {
        run_.Person().Fail(QStringLiteral("interrupted: nothing was written"));
        throw;
    }
    try {
        FlashAll();
    } catch (...) {
        ReportSensors();
        throw;
    }
    ReportSensors();
    return status_;
}

void FlashRun::LookAtSensors() {
    std::optional<Failure> silence;
    {
        const std::unique_ptr<SensorLine> line = run_.OpenLine();
        for (const std::int16_t address : run_.Addresses()) {
            try {
                targets_.push_back({.address = address, .found = ReadIdentity(run_, *line, address)});
            } catch (const Failure &failure) {
                if (failure.Status() != ExitStatus::NoConnection && !Several()) {
                    throw;
                }
                silence = failure;
                status_ = status_ == ExitStatus::Done ? failure.Status() : status_;
                if (Several()) {
                    run_.Person().Fail(failure.Text());
                }
            }
        }
    }
    if (silence) {
        LookForLoader(*silence);
    }
}

// A silent sensor may wait in its boot loader already. That one has no address.
void FlashRun::LookForLoader(const Failure &silence) {
    const bool isInLoader = SensorUpgrade::LoaderAnswers(run_);
    ThrowIfInterrupted();
    if (isInLoader && Several()) {
        throw Failure(
            ExitStatus::Refused,
            QStringLiteral("A sensor waits in its boot loader, which has no address: flash that one "
                           "alone first, with --address and one address"));
    }
    if (isInLoader) {
        const std::int16_t address = run_.Addresses().front();
        run_.Person().Remark(
            QStringLiteral("address %1: the sensor waits in its boot loader already").arg(address));
        targets_.push_back({.address = address, .found = std::nullopt});
        status_ = ExitStatus::Done;
    } else if (!Several()) {
        throw Failure(silence.Status(),
                      silence.Text() + QStringLiteral(", and no boot loader answers either"));
    }
}

void FlashRun::ReportPlan() {
    Report report(run_.Format(),
                  {{.key = QStringLiteral("address")},
                   {.key = QStringLiteral("serial"), .width = versionWidth},
                   {.key = QStringLiteral("firmware")},
                   {.key = QStringLiteral("lines")},
                   {.key = QStringLiteral("bytes")},
                   {.key = QStringLiteral("first"), .width = imageAddressWidth},
                   {.key = QStringLiteral("last")}},
                  run_.Results());
    report.NameColumns();
    for (const Target &target : targets_) {
        report.Add({CellOf(target.address), CellOfSerial(target.found), CellOfVersion(target.found),
                    CellOf(plan_.lines), CellOf(plan_.lines * MemoryImageLine::byteCount),
                    CellOf(Hexadecimal(plan_.first)), CellOf(Hexadecimal(plan_.last))});
    }
    report.End();
    run_.Person().Remark(QStringLiteral("Nothing was written. Without --dry-run each sensor enters its boot "
                                        "loader, is erased, gets the lines, each verified, and restarts"));
}

QString FlashRun::Named(const Target &target) const {
    return target.found ? QStringLiteral("address %1 (serial number %2, firmware %3)")
                              .arg(target.address)
                              .arg(target.found->serial)
                              .arg(target.found->version)
                        : QStringLiteral("the sensor in its boot loader");
}

QString FlashRun::Question() const {
    QStringList names;
    for (const Target &target : targets_) {
        names.append(Named(target));
    }
    return QStringLiteral("Replace the firmware of %1 by %2?").arg(names.join(u", "), plan_.firmware.Path());
}

QString FlashRun::Again(std::int16_t address) const {
    return Several() ? QStringLiteral("run the same command again with --address %1").arg(address)
                     : QStringLiteral("run the same command again");
}

void FlashRun::FlashAll() {
    for (std::size_t index = 0; index < targets_.size(); ++index) {
        bool goesOn = false;
        try {
            goesOn = FlashOne(targets_[index]);
        } catch (...) {
            NameUndone(index + 1);
            throw;
        }
        if (!goesOn) {
            NameUndone(index + 1);
            return;
        }
    }
}

// Returns whether the next sensor may follow: not while this one may answer in its place as a boot loader.
bool FlashRun::FlashOne(const Target &target) {
    if (plan_.firmware.HasChanged()) {
        Fail(target, ExitStatus::File,
             QStringLiteral("the firmware file changed meanwhile. %1")
                 .arg(WordsOf(StateBefore(target), Again(target.address))));
        return true;
    }
    UpgradeResult result;
    {
        SensorUpgrade upgrade(run_, target.address, target.found.has_value());
        result = upgrade.Run(plan_.firmware.Path());
    }
    for (const QString &line : result.differing) {
        run_.Person().Fail(QStringLiteral("address %1: differs: %2").arg(target.address).arg(line));
    }
    if (result.state != SensorState::Restarted) {
        const UpgradeFailure failure = FailureOf(result);
        const QString why = Interruption::Signal() != 0 ? QStringLiteral("interrupted") : failure.text;
        Fail(target, failure.status,
             QStringLiteral("%1. %2").arg(why, WordsOf(result.state, Again(target.address))));
        ThrowIfInterrupted();
        return result.state == SensorState::Unchanged && !result.otherLoader;
    }
    NameDifferences(target, result);
    return Confirm(target, result);
}

void FlashRun::NameDifferences(const Target &target, const UpgradeResult &result) {
    if (!result.differing.isEmpty()) {
        Fail(target, ExitStatus::Refused,
             QStringLiteral("The sensor was restarted, but %1 of %2 lines differ from the firmware: ")
                     .arg(result.differing.size())
                     .arg(plan_.lines) +
                 Again(target.address));
    }
}

// Returns whether the sensor runs: only it can say so.
bool FlashRun::Confirm(const Target &target, const UpgradeResult &result) {
    const QString restarted = WordsOf(result.state, {});
    std::optional<Identity> after;
    const auto add = qScopeGuard([&] { AddRow(target, after, result.differing); });
    try {
        after = ReadAfterRestart(target);
    } catch (const Interrupted &) {
        Fail(target, ExitStatus::NoConnection,
             QStringLiteral("interrupted. %1; its version wasn't read").arg(restarted));
        throw;
    } catch (const Failure &) {
        Fail(target, ExitStatus::NoConnection, QStringLiteral("%1, but doesn't answer").arg(restarted));
    }
    return after.has_value();
}

void FlashRun::AddRow(const Target &target, const std::optional<Identity> &after,
                      const QStringList &differing) {
    rows_.push_back({CellOf(target.address),
                     CellOfSerial(after ? after : target.found),
                     CellOfVersion(target.found),
                     CellOfVersion(after),
                     CellOf(plan_.lines),
                     CellOf(static_cast<int>(differing.size())),
                     {.text = differing.join(u';'), .value = QJsonArray::fromStringList(differing)}});
}

Identity FlashRun::ReadAfterRestart(const Target &target) {
    for (int tries = 1;; ++tries) {
        try {
            const std::unique_ptr<SensorLine> line = run_.OpenLine();
            return ReadIdentity(run_, *line, target.address);
        } catch (const Failure &) {
            if (tries == triesAfterRestart) {
                throw;
            }
            TurnEventLoopFor(pauseAfterRestartMs); // the sensor may start slowly
            ThrowIfInterrupted();
        }
    }
}

void FlashRun::Fail(const Target &target, ExitStatus status, const QString &text) {
    status_ = status_ == ExitStatus::Done ? status : status_;
    run_.Person().Fail(QStringLiteral("address %1: %2").arg(target.address).arg(text));
}

void FlashRun::NameUndone(std::size_t from) {
    QStringList undone;
    for (std::size_t index = from; index < targets_.size(); ++index) {
        undone.append(QString::number(targets_[index].address));
    }
    if (!undone.isEmpty()) {
        run_.Person().Fail(QStringLiteral("Not flashed: address %1").arg(undone.join(u", ")));
    }
}

// At the end: a reader that is gone must not end an upgrade.
void FlashRun::ReportSensors() {
    Report report(run_.Format(),
                  {{.key = QStringLiteral("address")},
                   {.key = QStringLiteral("serial"), .width = versionWidth},
                   {.key = QStringLiteral("before"), .width = versionWidth},
                   {.key = QStringLiteral("after"), .width = versionWidth},
                   {.key = QStringLiteral("lines")},
                   {.key = QStringLiteral("differing")},
                   {.key = QStringLiteral("differences"), .isForText = false}},
                  run_.Results());
    report.NameColumns();
    for (const Report::Row &row : rows_) {
        report.Add(row);
    }
    report.End();
}

} // namespace

ExitStatus Flash(CommandRun &run) {
    return FlashRun(run).Run();
}

} // namespace ztv

#include "cli/Commands.h"
#include "cli/Difference.h"
#include "cli/FileSettings.h"
#include "cli/Interruption.h"
#include "link/FailureText.h"
#include "model/ParamDefines.h"

#include <algorithm>
#include <functional>
#include <map>
#include <memory>
#include <numeric>
#include <optional>
#include <utility>

namespace ztv {

namespace {

using Values = SensorLine::Values;

// A sensor whose settings differ from its file's.
struct Plan {
    std::int16_t address = 0;
    Values sensor; // all rows
    Values file;   // the settings to load
    std::vector<Difference> differences;

    // Returns the value that a setting changes to; none if it doesn't change.
    std::optional<std::int16_t> Moved(std::int16_t tag) const {
        const auto found = std::ranges::find(differences, tag, &Difference::tag);
        return found == differences.end() ? std::nullopt
                                          : std::optional(static_cast<std::int16_t>(found->second));
    }
    std::int16_t NewAddress() const { return Moved(ParamDefines::NetworkAddress).value_or(address); }
};

QString At(std::int16_t address, const QString &text) {
    return QStringLiteral("address %1: %2").arg(QString::number(address), text);
}

// Returns what a write leaves alone or sets: the settings, and the number by which another sensor at the same
// address is noticed.
Values SettingsOf(const Values &values, const ClassZentrova &zentrova) {
    Values settings = values;
    std::erase_if(settings, [&](const auto &row) {
        return row.first != ParamDefines::SerialNumber &&
               (zentrova.ParamReadOnly(row.first) || ClassZentrova::IsCommand(row.first));
    });
    return settings;
}

// The work of `load`: shows what differs for all sensors, asks, and writes.
class Loading {
public:
    explicit Loading(CommandRun &run)
        : run_(run),
          files_(run.Given().files.front(), SettingsRows::Loaded(run), run) {
        RejectOneAddressForAll();
    }

    ExitStatus Run();

private:
    void RejectOneAddressForAll() const;
    void RejectAddressGivenTwice() const;
    static void RejectTakenAddress(SensorLine &line, const Plan &plan);
    void MakePlan(SensorLine &line, std::int16_t address, DifferenceReport &report);
    void Ask();
    ExitStatus Write(SensorLine &line);
    void WriteTo(SensorLine &line, const Plan &plan);
    void Verify(SensorLine &line, const Plan &plan, const Values &sent, LinkStatus status) const;
    Values ReadBack(SensorLine &line, const Plan &plan) const;
    Values ReadAtNewPlace(SensorLine &line, const Plan &plan) const;
    void Remark(std::int16_t address, const QString &text) { run_.Person().Remark(At(address, text)); }

    CommandRun &run_;
    FileOfSensor files_;
    std::vector<Plan> plans_;
    bool hasLoaded_ = false;
};

ExitStatus Loading::Run() {
    const std::unique_ptr<SensorLine> line = run_.OpenLine();
    DifferenceReport report(run_, QStringLiteral("sensor"), QStringLiteral("file"), true);
    const ExitStatus planned =
        run_.ForEachSensor(*line, run_.Addresses(),
                           [&](SensorLine &open, std::int16_t address) { MakePlan(open, address, report); });
    report.End();
    RejectAddressGivenTwice();
    if (plans_.empty()) {
        return planned;
    }
    if (run_.Given().dryRun) {
        run_.Person().Remark(QStringLiteral("Nothing was written"));
        return planned;
    }
    Ask();
    const ExitStatus written = Write(*line);
    return planned == ExitStatus::Done ? written : planned;
}

void Loading::RejectOneAddressForAll() const {
    const FileSettings *file = files_.Shared();
    if (file != nullptr && file->values.contains(ParamDefines::NetworkAddress) &&
        run_.Addresses().size() > 1) {
        throw Failure(ExitStatus::WrongUse,
                      QStringLiteral("%1 would give its address to %2 sensors; leave out --line-settings, or "
                                     "name a file for each with {address}")
                          .arg(file->name, QString::number(run_.Addresses().size())));
    }
}

void Loading::RejectAddressGivenTwice() const {
    std::map<std::int16_t, std::int16_t> owners;
    for (const Plan &plan : plans_) {
        const auto [owner, isFree] = owners.emplace(plan.NewAddress(), plan.address);
        if (!isFree) {
            throw Failure(ExitStatus::WrongUse,
                          At(plan.address, QStringLiteral("its file and that of address %1 both give the "
                                                          "address %2; nothing was written")
                                               .arg(owner->second)
                                               .arg(plan.NewAddress())));
        }
    }
}

void Loading::RejectTakenAddress(SensorLine &line, const Plan &plan) {
    if (plan.NewAddress() != plan.address && line.IsAnswered(plan.NewAddress())) {
        throw Failure(
            ExitStatus::Refused,
            At(plan.address, QStringLiteral("its file gives the address %1, at which another sensor answers")
                                 .arg(plan.NewAddress())));
    }
}

void Loading::MakePlan(SensorLine &line, std::int16_t address, DifferenceReport &report) {
    const Values sensor = line.Read(address, run_.AllTags());
    const FileSettings file = files_.Of(address, sensor);
    if (const auto leftOut = DifferencesOf(sensor, file.leftOut); !leftOut.empty()) {
        Remark(address,
               QStringLiteral("the file differs in %1; not loaded%2")
                   .arg(NamesOf(leftOut, run_.Zentrova()),
                        run_.Given().lineSettings ? QString() : QStringLiteral(" without --line-settings")));
    }
    Plan plan = {.address = address,
                 .sensor = sensor,
                 .file = file.values,
                 .differences = DifferencesOf(sensor, file.values)};
    if (plan.differences.empty()) {
        Remark(address, QStringLiteral("nothing to load: the sensor has these settings"));
        return;
    }
    RejectTakenAddress(line, plan);
    report.Add(plan.differences, address);
    plans_.push_back(std::move(plan));
}

void Loading::Ask() {
    if (run_.Given().yes) {
        return;
    }
    const auto count = std::transform_reduce(plans_.begin(), plans_.end(), std::size_t{0}, std::plus{},
                                             [](const Plan &plan) { return plan.differences.size(); });
    const QString what =
        count == 1 ? QStringLiteral("this setting") : QStringLiteral("these %1 settings").arg(count);
    const QString whereTo = plans_.size() == 1 ? QStringLiteral("address %1").arg(plans_.front().address)
                                               : QStringLiteral("%1 sensors").arg(plans_.size());
    run_.Person().AskToGoOn(QStringLiteral("Write %1 to %2?").arg(what, whereTo));
}

ExitStatus Loading::Write(SensorLine &line) {
    std::map<std::int16_t, const Plan *> plans;
    std::vector<std::int16_t> addresses;
    for (const Plan &plan : plans_) {
        addresses.push_back(plan.address);
        plans[plan.address] = &plan;
    }
    const ExitStatus status = run_.ForEachSensor(
        line, addresses, [&](SensorLine &open, std::int16_t address) { WriteTo(open, *plans.at(address)); });
    if (hasLoaded_) {
        run_.RemarkOnUnsavedChange();
    }
    return status;
}

// Read-only rows get the values that the sensor has now, so that a sensor that takes them changes nothing.
void Loading::WriteTo(SensorLine &line, const Plan &plan) {
    const Values now = line.Read(plan.address, run_.AllTags());
    const ClassZentrova &zentrova = run_.Zentrova();
    if (const auto changed = DifferencesOf(SettingsOf(plan.sensor, zentrova), now); !changed.empty()) {
        throw Failure(
            ExitStatus::Refused,
            At(plan.address, QStringLiteral("the sensor has changed meanwhile: %1; nothing was written")
                                 .arg(NamesOf(changed, zentrova))));
    }
    Values table = now;
    for (const auto &[tag, value] : plan.file) {
        table[tag] = value;
    }
    std::erase_if(table, [](const auto &row) { return ClassZentrova::IsCommand(row.first); });
    const LinkStatus status = line.WriteAll(plan.address, table);
    Verify(line, plan, SettingsOf(table, zentrova), status);
    hasLoaded_ = true;
    Remark(plan.address,
           QStringLiteral("%1 %2 loaded")
               .arg(plan.differences.size())
               .arg(plan.differences.size() == 1 ? QStringLiteral("setting") : QStringLiteral("settings")));
}

void Loading::Verify(SensorLine &line, const Plan &plan, const Values &sent, LinkStatus status) const {
    const std::vector<Difference> differences = DifferencesOf(ReadBack(line, plan), sent);
    if (differences.empty()) {
        return;
    }
    const QString reason =
        status == LinkStatus::NoError ? QString() : QStringLiteral("%1; ").arg(FailureText::WordsOf(status));
    throw Failure(ExitStatus::Refused,
                  At(plan.address, QStringLiteral("%1the sensor doesn't have what was written to %2")
                                       .arg(reason, NamesOf(differences, run_.Zentrova()))));
}

Values Loading::ReadBack(SensorLine &line, const Plan &plan) const {
    const QString unknown = QStringLiteral("the settings were sent, but not read back");
    try {
        return ReadAtNewPlace(line, plan);
    } catch (const Failure &failure) {
        throw Failure(failure.Status(), QStringLiteral("%1; %2").arg(failure.Text(), unknown));
    } catch (const Interrupted &) {
        run_.Person().Fail(At(plan.address, unknown));
        throw;
    }
}

// A sensor that didn't take the write, or whose confirmation doesn't count, is still at its old place.
Values Loading::ReadAtNewPlace(SensorLine &line, const Plan &plan) const {
    CommSettings place = run_.Comm();
    place.baud = plan.Moved(ParamDefines::BaudRateCode).value_or(place.baud);
    place.parityStop = plan.Moved(ParamDefines::ParityStopCode).value_or(place.parityStop);
    const bool isElsewhere = place != run_.Comm() || plan.NewAddress() != plan.address;
    try {
        line.SetLine(place);
        return line.Read(plan.NewAddress(), run_.AllTags());
    } catch (const Failure &failure) {
        if (!isElsewhere || failure.Status() != ExitStatus::NoConnection) {
            throw;
        }
    }
    line.SetLine(run_.Comm());
    return line.Read(plan.address, run_.AllTags());
}

} // namespace

ExitStatus Load(CommandRun &run) {
    return Loading(run).Run();
}

} // namespace ztv

#include "cli/ChangeReport.h"
#include "cli/Commands.h"
#include "cli/Interruption.h"
#include "cli/SensorPlace.h"
#include "link/ListText.h"
#include "model/ParamDefines.h"

#include <map>
#include <optional>

namespace ztv {

namespace {

// Returns true once the sensor has confirmed that it saved. Saving twice does no harm.
bool IsSaved(SensorLine &line, std::int16_t address) {
    constexpr int tries = 3;
    const auto isConfirmed = [&] {
        return line.Write(address, ParamDefines::SaveCommand, ParamDefines::StoreSettings) ==
               LinkStatus::NoError;
    };
    bool isSaved = isConfirmed();
    try {
        for (int count = 1; count < tries && !isSaved; ++count) {
            isSaved = isConfirmed();
        }
    } catch (const Failure &) { // says nothing about the first request, which the sensor may have taken
    }
    return isSaved;
}

void SaveSettings(CommandRun &run, SensorLine &line, std::int16_t address) {
    const QString notKnown = QStringLiteral("it isn't known whether the sensor saved its settings");
    bool isSaved = false;
    try {
        ThrowIfInterrupted();
        isSaved = IsSaved(line, address);
    } catch (const Interrupted &) {
        run.Person().Fail(
            QStringLiteral("address %1: interrupted: %2").arg(QString::number(address), notKnown));
        throw;
    } catch (const Failure &failure) {
        const bool isRefused = failure.Status() == ExitStatus::Refused;
        throw Failure(failure.Status(),
                      failure.Text() + QStringLiteral(": ") +
                          (isRefused ? QStringLiteral("the sensor refuses to save its settings") : notKnown));
    }
    if (!isSaved) {
        throw Failure(
            ExitStatus::NoConnection,
            QStringLiteral("address %1: no confirmation: %2").arg(QString::number(address), notKnown));
    }
}

// Whether a command restores a row: a setting, but none of the line's, which a sensor may keep until it
// restarts.
bool IsRestored(const ClassZentrova &zentrova, std::int16_t tag) {
    return !zentrova.ParamReadOnly(tag) && !ClassZentrova::IsCommand(tag) && !ChangesTheWay(tag);
}

class ReinitRun {
public:
    explicit ReinitRun(CommandRun &run) : run_(run) {}

    ExitStatus Run();

private:
    void ReadBefore(SensorLine &line, std::int16_t address);
    ExitStatus ReportWanted();
    ExitStatus ReinitAll();
    void Ask();
    void Reinit(SensorLine &line, std::int16_t address);
    bool Send(SensorLine &line, std::int16_t address);
    FoundSensor Find(SensorLine &line, std::int16_t address, bool isConfirmed);
    void Check(std::int16_t address, const SensorLine::Values &held, bool isConfirmed) const;
    void Report(std::int16_t address, const SensorLine::Values &held);
    void SayWhere(std::int16_t address, const FoundSensor &found);
    CommSettings PlaceOf(std::int16_t address) const;
    CommSettings PresetPlace() const;
    std::vector<std::int16_t> NotAtPreset(const SensorLine::Values &values) const;
    const ClassZentrova &Zentrova() const { return run_.Zentrova(); }

    CommandRun &run_;
    std::optional<ChangeReport> report_;                // from after the question
    std::map<std::int16_t, SensorLine::Values> before_; // by address
};

ExitStatus ReinitRun::Run() {
    const ExitStatus read =
        run_.ForEachSensor([this](SensorLine &line, std::int16_t address) { ReadBefore(line, address); });
    if (!run_.Given().dryRun && !before_.empty()) {
        Ask();
    }
    report_.emplace(run_, run_.AllTags());
    const ExitStatus written = run_.Given().dryRun ? ReportWanted() : ReinitAll();
    report_->End();
    return read == ExitStatus::Done ? written : read;
}

void ReinitRun::ReadBefore(SensorLine &line, std::int16_t address) {
    const SensorLine::Values values = line.Read(address, run_.AllTags());
    before_[address] = values;
    run_.Person().Remark(QStringLiteral("address %1: settings that differ from their presets: %2")
                             .arg(address)
                             .arg(NotAtPreset(values).size()));
}

ExitStatus ReinitRun::ReportWanted() {
    for (const auto &[address, values] : before_) {
        for (const std::int16_t tag : NotAtPreset(values)) {
            report_->Add(address, {.tag = tag,
                                   .before = values.at(tag),
                                   .value = Zentrova().ParamPreset(tag),
                                   .outcome = QStringLiteral("would be reset")});
        }
    }
    run_.Person().Remark(QStringLiteral("Nothing was written"));
    return ExitStatus::Done;
}

ExitStatus ReinitRun::ReinitAll() {
    if (before_.empty()) {
        return ExitStatus::Done;
    }
    return run_.ForEachSensor([this](SensorLine &line, std::int16_t address) {
        if (before_.contains(address)) {
            Reinit(line, address);
        }
    });
}

// Once for all sensors, before the first write.
void ReinitRun::Ask() {
    if (run_.Given().yes) {
        return;
    }
    QStringList addresses;
    for (const auto &[address, values] : before_) {
        addresses.append(QString::number(address));
    }
    run_.Person().AskToGoOn(
        (addresses.size() == 1 ? QStringLiteral("Address ") : QStringLiteral("Addresses ")) +
        addresses.join(QStringLiteral(", ")) +
        QStringLiteral(": Are you sure? This will reset all parameters back to the factory default values."));
}

void ReinitRun::Reinit(SensorLine &line, std::int16_t address) {
    const std::int32_t serialNumber =
        line.Read(address, {ParamDefines::SerialNumber}).at(ParamDefines::SerialNumber);
    if (serialNumber != before_.at(address).at(ParamDefines::SerialNumber)) {
        throw Failure(ExitStatus::Refused,
                      QStringLiteral("address %1: another sensor answers there by now; nothing was written")
                          .arg(address));
    }
    ThrowIfInterrupted();
    const bool isConfirmed = Send(line, address);
    try {
        const FoundSensor found = Find(line, address, isConfirmed);
        Report(address, found.values);
        Check(address, found.values, isConfirmed);
        SayWhere(address, found);
    } catch (const Interrupted &) {
        run_.Person().Fail(
            QStringLiteral("address %1: interrupted before the settings were read back").arg(address));
        throw;
    }
}

// Returns whether the sensor confirmed the command, which is sent once.
bool ReinitRun::Send(SensorLine &line, std::int16_t address) {
    try {
        return line.Write(address, ParamDefines::ReinitCommand, ParamDefines::FactoryDefaults) ==
               LinkStatus::NoError;
    } catch (const Failure &failure) {
        if (failure.Status() == ExitStatus::Refused) {
            throw Failure(ExitStatus::Refused,
                          failure.Text() + QStringLiteral(": the sensor refuses to be re-initialized"));
        }
        return false; // the line broke, perhaps after the sensor took the command
    }
}

FoundSensor ReinitRun::Find(SensorLine &line, std::int16_t address, bool isConfirmed) {
    const std::int32_t serialNumber = before_.at(address).at(ParamDefines::SerialNumber);
    const std::optional<FoundSensor> found =
        FindSensor(line, {PlaceOf(address), PresetPlace()}, serialNumber, run_.AllTags());
    if (!found) {
        throw Failure(
            ExitStatus::NoConnection,
            QStringLiteral("address %1: it can't be read back, so it isn't known whether ").arg(address) +
                (isConfirmed ? QStringLiteral("the settings hold their presets")
                             : QStringLiteral("the sensor was re-initialized")));
    }
    return *found;
}

void ReinitRun::Check(std::int16_t address, const SensorLine::Values &held, bool isConfirmed) const {
    QStringList wrong;
    for (const std::int16_t tag : NotAtPreset(held)) {
        if (IsRestored(Zentrova(), tag)) {
            wrong.append(QStringLiteral("\"%1\" (%2)")
                             .arg(Zentrova().ParamName(tag), Zentrova().FormatRaw(held.at(tag), tag)));
        }
    }
    if (wrong.isEmpty()) {
        return;
    }
    constexpr qsizetype most = 3;
    throw Failure(ExitStatus::Refused,
                  QStringLiteral("address %1: %2these don't hold their presets: %3")
                      .arg(QString::number(address),
                           isConfirmed ? QString() : QStringLiteral("no confirmation, and "),
                           ListText(wrong, most)));
}

void ReinitRun::Report(std::int16_t address, const SensorLine::Values &held) {
    for (const auto &[tag, before] : before_.at(address)) {
        const bool isSetting = !Zentrova().ParamReadOnly(tag) && !ClassZentrova::IsCommand(tag);
        if (isSetting && held.at(tag) != before) {
            report_->Add(
                address,
                {.tag = tag, .before = before, .value = held.at(tag), .outcome = QStringLiteral("reset")});
        }
    }
}

void ReinitRun::SayWhere(std::int16_t address, const FoundSensor &found) {
    if (found.place != PlaceOf(address)) {
        run_.Person().Remark(QStringLiteral("address %1: the sensor now answers at %2")
                                 .arg(address)
                                 .arg(PlaceText(found.place)));
    } else if (found.place != PresetPlace()) {
        run_.Person().Remark(
            QStringLiteral("address %1: the sensor still answers there; after its next restart "
                           "it may answer at %2")
                .arg(address)
                .arg(PlaceText(PresetPlace())));
    }
}

CommSettings ReinitRun::PlaceOf(std::int16_t address) const {
    CommSettings place = run_.Comm();
    place.address = address;
    return place;
}

CommSettings ReinitRun::PresetPlace() const {
    CommSettings place = run_.Comm();
    for (const std::int16_t tag :
         {ParamDefines::NetworkAddress, ParamDefines::BaudRateCode, ParamDefines::ParityStopCode}) {
        place = PlaceAfter(place, tag, Zentrova().ParamPreset(tag));
    }
    return place;
}

// Leaves out the addressing mode: it isn't a setting of the user's.
std::vector<std::int16_t> ReinitRun::NotAtPreset(const SensorLine::Values &values) const {
    std::vector<std::int16_t> tags;
    for (const auto &[tag, value] : values) {
        const bool counts = IsRestored(Zentrova(), tag) || MovesSensor(tag);
        if (counts && value != Zentrova().ParamPreset(tag)) {
            tags.push_back(tag);
        }
    }
    return tags;
}

} // namespace

ExitStatus Store(CommandRun &run) {
    const bool dryRun = run.Given().dryRun;
    Report report(run.Format(),
                  {{.key = QStringLiteral("address")},
                   {.key = QStringLiteral("serial")},
                   {.key = QStringLiteral("outcome")}},
                  run.Results());
    report.NameColumns();
    const ExitStatus status = run.ForEachSensor([&](SensorLine &line, std::int16_t address) {
        const std::int32_t serial =
            line.Read(address, {ParamDefines::SerialNumber}).at(ParamDefines::SerialNumber);
        if (!dryRun) {
            SaveSettings(run, line, address);
        }
        report.Add({CellOf(address), CellOf(serial),
                    CellOf(dryRun ? QStringLiteral("would be saved") : QStringLiteral("saved"))});
    });
    report.End();
    if (dryRun) {
        run.Person().Remark(QStringLiteral("Nothing was written"));
    }
    return status;
}

ExitStatus Reinit(CommandRun &run) {
    return ReinitRun(run).Run();
}

} // namespace ztv

#include "cli/Assignments.h"
#include "cli/ChangeReport.h"
#include "cli/Commands.h"
#include "cli/Interruption.h"
#include "cli/SensorPlace.h"
#include "cli/SensorWrites.h"
#include "cli/SetPlan.h"
#include "link/ListText.h"
#include "model/ParamDefines.h"

#include <algorithm>

namespace ztv {

namespace {

class SetRun {
public:
    SetRun(CommandRun &run, const std::vector<Assignment> &assignments);

    ExitStatus Run();

private:
    void Set(SensorLine &line, std::int16_t address);
    static void RejectTakenAddress(SensorLine &line, std::int16_t address, const SetPlan &plan);
    SensorLine::Values Send(SensorWrites &writes, std::int16_t address);
    void ReportAll(std::int16_t address, const SetPlan &plan, const QString &changed);
    void ReportHeld(std::int16_t address, const SetPlan &plan, const SensorLine::Values &held);
    void Report(std::int16_t address, const SetPlan &plan, std::int16_t tag, const QString &changed);

    CommandRun &run_;
    const std::vector<Assignment> &assignments_;
    ChangeReport report_;
    bool hasWritten_ = false;
};

// Returns the rows that may be reported.
std::vector<std::int16_t> TagsOf(const std::vector<Assignment> &assignments) {
    std::vector<std::int16_t> tags;
    for (const Assignment &assignment : assignments) {
        tags.push_back(assignment.tag);
        if (assignment.tag == ParamDefines::FarDistance) {
            tags.push_back(ParamDefines::NearDistance); // follows it in one mode
        }
    }
    return tags;
}

SetRun::SetRun(CommandRun &run, const std::vector<Assignment> &assignments)
    : run_(run),
      assignments_(assignments),
      report_(run, TagsOf(assignments)) {}

ExitStatus SetRun::Run() {
    const ExitStatus status =
        run_.ForEachSensor([this](SensorLine &line, std::int16_t address) { Set(line, address); });
    report_.End();
    if (run_.Given().dryRun) {
        run_.Person().Remark(QStringLiteral("Nothing was written"));
    } else if (hasWritten_) {
        run_.RemarkOnUnsavedChange();
    }
    return status;
}

void SetRun::Set(SensorLine &line, std::int16_t address) {
    const SetPlan plan = PlanOf(run_.Zentrova(), address, line.Read(address, run_.AllTags()), assignments_);
    RejectTakenAddress(line, address, plan);
    if (run_.Given().dryRun || plan.writes.empty()) {
        ReportAll(address, plan, QStringLiteral("would be written"));
        return;
    }
    CommSettings place = run_.Comm();
    place.address = address;
    SensorWrites writes(line, run_.Zentrova(), plan, place);
    const SensorLine::Values held = Send(writes, address);
    if (writes.Place() != place) {
        run_.Person().Remark(QStringLiteral("address %1: the sensor now answers at %2")
                                 .arg(address)
                                 .arg(PlaceText(writes.Place())));
    }
    ReportHeld(address, plan, held);
}

// Two sensors at one address would answer at the same time.
void SetRun::RejectTakenAddress(SensorLine &line, std::int16_t address, const SetPlan &plan) {
    if (!plan.Writes(ParamDefines::NetworkAddress)) {
        return;
    }
    const auto wanted = static_cast<std::int16_t>(plan.after.at(ParamDefines::NetworkAddress));
    if (line.IsAnswered(wanted)) {
        throw Failure(ExitStatus::Refused,
                      QStringLiteral("address %1: another sensor answers at address %2; give a free address")
                          .arg(address)
                          .arg(wanted));
    }
}

SensorLine::Values SetRun::Send(SensorWrites &writes, std::int16_t address) {
    try {
        const SensorLine::Values held = writes.Send();
        hasWritten_ = true;
        return held;
    } catch (const Failure &) {
        hasWritten_ = hasWritten_ || writes.HasBegun();
        throw;
    } catch (const Interrupted &) {
        run_.Person().Fail(QStringLiteral("address %1: interrupted").arg(address) + writes.Progress());
        throw;
    }
}

void SetRun::ReportAll(std::int16_t address, const SetPlan &plan, const QString &changed) {
    for (const std::int16_t tag : plan.tags) {
        Report(address, plan, tag, changed);
    }
}

// Reports the rows that hold what was asked. Throws a Failure that names the others.
void SetRun::ReportHeld(std::int16_t address, const SetPlan &plan, const SensorLine::Values &held) {
    QStringList others;
    for (const std::int16_t tag : plan.tags) {
        const std::int32_t asked = plan.after.at(tag);
        if (held.at(tag) == asked) {
            Report(address, plan, tag, QStringLiteral("written"));
        } else {
            others.append(NotHeldText(run_.Zentrova(), {.tag = tag, .raw = asked}, held.at(tag)));
        }
    }
    if (!others.empty()) {
        constexpr qsizetype most = 3;
        throw Failure(ExitStatus::Refused,
                      QStringLiteral("address %1: %2").arg(QString::number(address), ListText(others, most)));
    }
}

void SetRun::Report(std::int16_t address, const SetPlan &plan, std::int16_t tag, const QString &changed) {
    report_.Add(address, {.tag = tag,
                          .before = plan.before.at(tag),
                          .value = plan.after.at(tag),
                          .outcome = plan.Writes(tag) ? changed : QStringLiteral("held")});
}

void RejectSharedAddress(const CommandRun &run, const std::vector<Assignment> &assignments) {
    const bool sets =
        std::ranges::find(assignments, ParamDefines::NetworkAddress, &Assignment::tag) != assignments.end();
    if (sets && run.Addresses().size() > 1) {
        throw Failure(ExitStatus::WrongUse,
                      QStringLiteral("Several sensors can't have the same address; name one with --address"));
    }
}

} // namespace

ExitStatus Set(CommandRun &run) {
    const std::vector<Assignment> assignments = AssignmentsOf(run.Given().parameters, run.Zentrova());
    RejectSharedAddress(run, assignments);
    return SetRun(run, assignments).Run();
}

} // namespace ztv

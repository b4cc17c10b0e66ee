#include "cli/SetPlan.h"

#include "cli/Failure.h"
#include "cli/SensorPlace.h"
#include "model/ParamDefines.h"
#include "model/TypedValue.h"

#include <algorithm>
#include <optional>

namespace ztv {

namespace {

class Planner {
public:
    Planner(ClassZentrova &zentrova, std::int16_t address, const SensorLine::Values &present)
        : zentrova_(zentrova),
          address_(address) {
        plan_.before = present;
        for (const auto &[tag, raw] : present) {
            zentrova_.ParamUpdate(tag, raw);
        }
    }

    void Add(const Assignment &assignment) {
        const TypedValue typed = TypedValue::Of(zentrova_, assignment.text, assignment.tag);
        if (typed.verdict != TypedValue::Verdict::Fits) {
            throw Refused(assignment.tag, typed.refusal);
        }
        Take(assignment.tag, typed.raw);
        if (const auto near = TypedValue::NearDistanceAfter(zentrova_, assignment.tag)) {
            CheckWhatFollows(assignment.tag, *near);
            Take(ParamDefines::NearDistance, *near);
        }
    }

    SetPlan Plan() {
        std::ranges::stable_partition(plan_.writes,
                                      [](const SetPlan::Write &write) { return !MovesSensor(write.tag); });
        for (const std::int16_t tag : plan_.tags) {
            plan_.after[tag] = zentrova_.ParamValue(tag);
        }
        return plan_;
    }

private:
    Failure Refused(std::int16_t tag, const QString &why) const {
        return {ExitStatus::Refused,
                QStringLiteral("address %1: %2: %3").arg(address_).arg(zentrova_.ParamName(tag), why)};
    }

    // The sensor would refuse such a near distance after it has taken the far one.
    void CheckWhatFollows(std::int16_t tag, std::int32_t near) const {
        constexpr std::int16_t row = ParamDefines::NearDistance;
        const std::int32_t least = zentrova_.ParamMin(row);
        const std::int32_t greatest = zentrova_.ParamMax(row);
        if (near < least || near > greatest) {
            throw Refused(tag, QStringLiteral("\"%1\" would follow to %2, but must be between %3 and %4")
                                   .arg(zentrova_.ParamName(row), zentrova_.FormatRaw(near, row),
                                        zentrova_.FormatRaw(least, row), zentrova_.FormatRaw(greatest, row)));
        }
    }

    void Take(std::int16_t tag, std::int32_t raw) {
        if (std::ranges::find(plan_.tags, tag) == plan_.tags.end()) {
            plan_.tags.push_back(tag);
        }
        if (zentrova_.ParamValue(tag) != raw) {
            plan_.writes.push_back({.tag = tag, .raw = raw});
            zentrova_.ParamUpdate(tag, raw);
        }
    }

    ClassZentrova &zentrova_;
    std::int16_t address_;
    SetPlan plan_;
};

} // namespace

bool SetPlan::Writes(std::int16_t tag) const {
    return std::ranges::find(writes, tag, &Write::tag) != writes.end();
}

QString NotHeldText(const ClassZentrova &zentrova, const SetPlan::Write &asked, std::int32_t held) {
    return QStringLiteral("\"%1\" holds %2, not %3 as asked")
        .arg(zentrova.ParamName(asked.tag), zentrova.FormatRaw(held, asked.tag),
             zentrova.FormatRaw(asked.raw, asked.tag));
}

SetPlan PlanOf(ClassZentrova &zentrova, std::int16_t address, const SensorLine::Values &present,
               const std::vector<Assignment> &assignments) {
    Planner planner(zentrova, address, present);
    for (const Assignment &assignment : assignments) {
        planner.Add(assignment);
    }
    return planner.Plan();
}

} // namespace ztv

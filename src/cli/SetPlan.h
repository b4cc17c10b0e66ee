#pragma once

#include "cli/Assignments.h"
#include "cli/SensorLine.h"
#include "model/ClassZentrova.h"

#include <QString>
#include <cstdint>
#include <vector>

namespace ztv {

// The writes that give a sensor the values that were asked for.
struct SetPlan {
    struct Write {
        std::int16_t tag = 0;
        std::int32_t raw = 0;
    };

    std::vector<std::int16_t> tags; // those asked for, and what follows them
    SensorLine::Values before;
    SensorLine::Values after;
    std::vector<Write> writes; // in the order to send; a value that the sensor has is left out

    bool Writes(std::int16_t tag) const;
};

// Returns why a write didn't do what was asked: "Near Distance" holds 12.00", not 13.00".
QString NotHeldText(const ClassZentrova &zentrova, const SetPlan::Write &asked, std::int32_t held);

// Checks the assignments as the program checks typed values: each beside the sensor's present values and the
// assignments before it. Throws a Failure (refused) that names the address, the parameter and the reason.
// Writes that move the sensor to another address, baud rate or parity come last. Fills the table.
SetPlan PlanOf(ClassZentrova &zentrova, std::int16_t address, const SensorLine::Values &present,
               const std::vector<Assignment> &assignments);

} // namespace ztv

#pragma once

#include "cli/CommandRun.h"
#include "cli/Report.h"

#include <QString>
#include <cstdint>
#include <vector>

namespace ztv {

// Prints what a command changed in the sensors, or would change: a row for each parameter, with its value
// before and after.
class ChangeReport {
public:
    // `tags` are those that may be added. REQUIRES: the run outlives this.
    ChangeReport(CommandRun &run, const std::vector<std::int16_t> &tags);

    struct Change {
        std::int16_t tag = 0;
        std::int32_t before = 0;
        std::int32_t value = 0;
        QString outcome; // a word or two
    };
    void Add(std::int16_t address, const Change &change);

    // Call it once, after the last row.
    void End() { report_.End(); }

private:
    const ClassZentrova &zentrova_;
    Report report_;
};

} // namespace ztv

#pragma once

#include "cli/CommandRun.h"
#include "cli/Report.h"
#include "cli/SensorLine.h"

#include <QString>
#include <QStringList>
#include <cstdint>
#include <optional>
#include <vector>

namespace ztv {

// A parameter whose values differ.
struct Difference {
    std::int16_t tag = 0;
    std::int32_t first = 0;
    std::int32_t second = 0;
};

// Returns the differences between the parameters that both have.
std::vector<Difference> DifferencesOf(const SensorLine::Values &first, const SensorLine::Values &second);

// Names the parameters: the first ones, and how many more there are.
QString NamesOf(const std::vector<Difference> &differences, const ClassZentrova &zentrova);

// Prints differences. A text without any has no line.
class DifferenceReport {
public:
    // The names of what is compared. `isOfSensors` adds the sensor's address.
    DifferenceReport(CommandRun &run, const QString &first, const QString &second, bool isOfSensors);

    // `address` is the sensor's, if there is one.
    void Add(const std::vector<Difference> &differences, std::int16_t address = 0);
    void End() { report_.End(); }

private:
    Report::Row RowOf(const Difference &difference) const;

    const ClassZentrova &zentrova_;
    bool isOfSensors_;
    Report report_;
};

} // namespace ztv

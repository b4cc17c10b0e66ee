#pragma once

#include "model/ReadOnlyDatabase.h"

#include <QString>
#include <cstdint>
#include <functional>
#include <vector>

// A settings file: a small database that keeps the raw values of the parameter table.

struct SettingsRow {
    std::int16_t tag = 0;
    QString name;
    std::int32_t value = 0;
};

struct SettingsProperties {
    QString notes;
    QString swVersion;
    QString userUnits;
};

// Writes the file anew, in one step. Fault (file, database) when that fails; an old file is then whole.
void WriteSettingsFile(const QString &fileName, const std::vector<SettingsRow> &rows,
                       const SettingsProperties &properties);

// Reads a settings file, which comes from outside. Every call: fault (database) with a message that says
// what is wrong where.
class SettingsFileReader {
public:
    explicit SettingsFileReader(const QString &fileName) : database_(fileName) {}

    // The number of rows, which the file keeps among its values.
    std::int16_t Count();

    // Visits the values of the rows 1 to `count` - 1. Rows are known by their position alone.
    void ForEachValue(std::int16_t count, const std::function<void(std::int16_t, std::int32_t)> &visit);

    // The notes, cut after a megabyte; they say so then.
    QString Notes();

private:
    Fault TooFewRecords(int records, const QString &wanted) const;

    ReadOnlyDatabase database_;
};

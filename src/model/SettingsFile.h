#pragma once

#include "model/ReadOnlyDatabase.h"

#include <QString>
#include <cstdint>
#include <functional>
#include <vector>

namespace ztv {

// A settings file: a small database of the raw values of the parameter table.

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

// Replaces the file in one step. Fault (file, database) on failure; an old file then stays whole.
void WriteSettingsFile(const QString &fileName, const std::vector<SettingsRow> &rows,
                       const SettingsProperties &properties);

// Reads a settings file from outside. Every call may end in a fault (database) with a message that names the
// error and its place.
class SettingsFileReader {
public:
    explicit SettingsFileReader(const QString &fileName) : database_(fileName) {}

    // Returns the number of rows, which the file contains among its values.
    std::int16_t Count();

    // Visits the values of the rows 1 to `count` - 1. Rows are identified by their position alone.
    void ForEachValue(std::int16_t count, const std::function<void(std::int16_t, std::int32_t)> &visit);

    // Returns the notes. Notes of more than 2^20 characters are cut and end with a remark that says so.
    QString Notes();

private:
    Fault TooFewRecords(int records, const QString &wanted) const;

    ReadOnlyDatabase database_;
};

} // namespace ztv

#include "model/PresetsFile.h"

#include "model/ParamDefines.h"
#include "model/ReadOnlyDatabase.h"

#include <limits>

namespace ztv {

namespace {

// Reads the parameter count, which the table itself contains: the value of the record at ParameterCount's
// position.
std::int16_t ReadCount(ReadOnlyDatabase &database) {
    std::int16_t count = 0;
    int position = 0;
    database.ForEachRecord("Parameters", {"Value"}, [&](const DatabaseRecord &record) {
        if (position++ < ParamDefines::ParameterCount) {
            return true;
        }
        count = static_cast<std::int16_t>(record.Integer(0, 1, std::numeric_limits<std::int16_t>::max()));
        return false;
    });
    if (count == 0) {
        throw database.Failure(
            QStringLiteral("table Parameters has %1 records, and the parameter count stands in record %2")
                .arg(position)
                .arg(ParamDefines::ParameterCount));
    }
    return count;
}

std::vector<PresetRow> ReadRows(ReadOnlyDatabase &database, std::int16_t count) {
    std::vector<PresetRow> rows;
    rows.reserve(static_cast<std::size_t>(count));
    database.ForEachRecord(
        "Parameters",
        {"Min", "Max", "Preset", "Value", "ReadOnly", "Signed", "Name", "Units", "DecimalPlaces"},
        [&](const DatabaseRecord &record) {
            if (rows.size() == static_cast<std::size_t>(count)) {
                return false;
            }
            rows.push_back({.minimum = record.Int32(0),
                            .maximum = record.Int32(1),
                            .preset = record.Int32(2),
                            .value = record.Int32(3),
                            .readOnly = record.Boolean(4),
                            .isSigned = record.Boolean(5),
                            .name = record.Text(6),
                            .units = record.Int16(7),
                            .decimalPlaces = record.Int16(8)});
            return true;
        });
    if (rows.size() < static_cast<std::size_t>(count)) {
        throw database.Failure(QStringLiteral("table Parameters has %1 records, fewer than its count %2")
                                   .arg(rows.size())
                                   .arg(count));
    }
    return rows;
}

std::vector<UnitTexts> ReadUnits(ReadOnlyDatabase &database) {
    constexpr int sourceColumns = 5;
    constexpr std::size_t most = std::numeric_limits<std::int16_t>::max(); // a unit code has 16 bits
    std::vector<UnitTexts> units;
    database.ForEachRecord("Units", {"UnitText0", "UnitText1", "UnitText2", "UnitText3", "UnitText4"},
                           [&](const DatabaseRecord &record) {
                               UnitTexts texts;
                               for (int column = 0; column < sourceColumns; ++column) {
                                   if (!record.IsNull(column)) {
                                       texts[static_cast<std::size_t>(column)] = record.Text(column);
                                   }
                               }
                               units.push_back(texts);
                               return units.size() <= most;
                           });
    if (units.empty() || units.size() > most) {
        throw database.Failure(QStringLiteral("table Units has no records, or more than unit codes"));
    }
    return units;
}

} // namespace

Presets ReadPresetsFile(const QString &fileName) {
    ReadOnlyDatabase database(fileName);
    Presets presets;
    presets.rows = ReadRows(database, ReadCount(database));
    presets.units = ReadUnits(database);
    return presets;
}

} // namespace ztv

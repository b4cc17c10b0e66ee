#pragma once

#include <QString>
#include <array>
#include <cstdint>
#include <vector>

namespace ztv {

// One parameter as the presets database describes it.
struct PresetRow {
    std::int32_t minimum = 0;
    std::int32_t maximum = 0;
    std::int32_t preset = 0;
    std::int32_t value = 0;
    bool readOnly = false;
    bool isSigned = false;
    QString name;
    std::int16_t units = 0;
    std::int16_t decimalPlaces = 0;
};

// The texts of one unit code. The last text is in no column of the file and stays empty.
using UnitTexts = std::array<QString, 6>;

struct Presets {
    std::vector<PresetRow> rows;
    std::vector<UnitTexts> units;
};

// Reads the presets database. Fault (database, overflow) with a message that names the error and its place.
Presets ReadPresetsFile(const QString &fileName);

} // namespace ztv

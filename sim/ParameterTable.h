#pragma once

#include <QString>

#include <cstddef>
#include <vector>

namespace sim {

// One row of the presets database.
struct ParameterRow {
    int min = 0;
    int max = 0;
    int preset = 0;
    int value = 0;
    bool readOnly = false;
    bool isSigned = false;
};

// The sensor's parameters as the presets database describes them. The position of a row is its number.
class ParameterTable {
public:
    // Returns a description of the error, or an empty text.
    QString Load(const QString &fileName);

    int Count() const { return static_cast<int>(rows_.size()); }
    bool Has(int number) const { return number > 0 && number < Count(); }
    const ParameterRow &Row(int number) const { return rows_.at(static_cast<std::size_t>(number)); }

private:
    std::vector<ParameterRow> rows_;
};

} // namespace sim

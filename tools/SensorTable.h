#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace ztv {

// One row of parameters.txt.
struct Parameter {
    std::string where; // "file:line"
    std::int32_t number = 0;
    std::int32_t min = 0;
    std::int32_t max = 0;
    std::int32_t preset = 0;
    std::int32_t value = 0;
    bool readOnly = false;
    bool isSigned = false;
    std::int32_t unit = 0;
    std::int32_t decimals = 0;
    std::string name;
    std::string role; // empty for a row that no code knows
};

// One row of units.txt.
struct Unit {
    std::string where;
    std::int32_t code = 0;
    std::vector<std::string> texts; // always five; empty for a missing one
};

// One row of values.txt: a value with a meaning of its own.
struct NamedValue {
    std::string where;
    std::vector<std::string> roles; // of the parameters that can have it
    std::int32_t value = 0;
    std::string name;
};

// The facts about a type of sensor, as three readable tables hold them.
class SensorTable {
public:
    // std::runtime_error, naming file and line, when a table can't be read or contradicts itself.
    SensorTable(const std::filesystem::path &parameters, const std::filesystem::path &units,
                const std::filesystem::path &values);

    const std::vector<Parameter> &Parameters() const { return parameters_; }
    const std::vector<Unit> &Units() const { return units_; }
    const std::vector<NamedValue> &Values() const { return values_; }

    // Return the row of a role, and the value of a name; null for none.
    const Parameter *WithRole(std::string_view role) const;
    const NamedValue *Named(std::string_view name) const;

    // Returns a text of a parameter's unit; empty where there is none.
    std::string UnitText(const Parameter &parameter, std::int64_t value) const;

private:
    void ReadParameters(const std::filesystem::path &path);
    void ReadUnits(const std::filesystem::path &path);
    void ReadValues(const std::filesystem::path &path);
    void CheckNames(const Parameter &parameter) const;
    void CheckValue(const NamedValue &named) const;

    std::vector<Parameter> parameters_;
    std::vector<Unit> units_;
    std::vector<NamedValue> values_;
};

} // namespace ztv

#include "tools/SensorTable.h"

#include "tools/TextTable.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace ztv {

namespace {

namespace fs = std::filesystem;

// The program's constants bear these names. A capital letter first keeps clear of the language's words.
bool IsConstantName(std::string_view text) {
    const auto isCapital = [](char c) { return c >= 'A' && c <= 'Z'; };
    const auto isSmallOrDigit = [](char c) { return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9'); };
    return !text.empty() && isCapital(text.front()) &&
           std::all_of(text.begin(), text.end(), [&](char c) { return isCapital(c) || isSmallOrDigit(c); });
}

void CheckConstantName(const std::string &where, const std::string &name) {
    if (!IsConstantName(name)) {
        throw std::runtime_error(where + ": \"" + name + "\" is not a name like NearDistance");
    }
}

// Verifies that a row stands where its number says: only a row's place in the database determines its number.
void CheckPlace(const TextRow &row, std::size_t place) {
    if (row.Integer(0) != static_cast<std::int32_t>(place)) {
        throw std::runtime_error(row.where + ": row " + row.cells[0] + " stands where row " +
                                 std::to_string(place) + " is wanted");
    }
}

template <typename Rows, typename Member>
const typename Rows::value_type *Find(const Rows &rows, Member member, std::string_view text) {
    const auto found =
        std::find_if(rows.begin(), rows.end(), [&](const auto &row) { return row.*member == text; });
    return found == rows.end() ? nullptr : &*found;
}

} // namespace

SensorTable::SensorTable(const fs::path &parameters, const fs::path &units, const fs::path &values) {
    ReadParameters(parameters);
    ReadUnits(units);
    ReadValues(values);
}

void SensorTable::ReadParameters(const fs::path &path) {
    for (const TextRow &row : ReadTextTable(path, {"Tag", "Min", "Max", "Preset", "Value", "ReadOnly",
                                                   "Signed", "Units", "DecimalPlaces", "Name", "Role"})) {
        CheckPlace(row, parameters_.size());
        Parameter p;
        p.where = row.where;
        p.number = row.Integer(0);
        p.min = row.Integer(1);
        p.max = row.Integer(2);
        p.preset = row.Integer(3);
        p.value = row.Integer(4);
        p.readOnly = row.Flag(5);
        p.isSigned = row.Flag(6);
        p.unit = row.Integer(7);
        p.decimals = row.Integer(8);
        p.name = row.cells[9];
        p.role = row.cells[10] == "-" ? std::string() : row.cells[10];
        CheckNames(p);
        parameters_.push_back(std::move(p));
    }
}

void SensorTable::CheckNames(const Parameter &parameter) const {
    if (const Parameter *other = Find(parameters_, &Parameter::name, parameter.name)) {
        throw std::runtime_error(parameter.where + ": row " + std::to_string(other->number) +
                                 " has the name \"" + parameter.name + "\" already");
    }
    if (parameter.role.empty()) {
        return;
    }
    CheckConstantName(parameter.where, parameter.role);
    if (const Parameter *other = WithRole(parameter.role)) {
        throw std::runtime_error(parameter.where + ": row " + std::to_string(other->number) +
                                 " has the role " + parameter.role + " already");
    }
}

void SensorTable::ReadUnits(const fs::path &path) {
    for (const TextRow &row :
         ReadTextTable(path, {"Code", "UnitText0", "UnitText1", "UnitText2", "UnitText3", "UnitText4"})) {
        CheckPlace(row, units_.size());
        units_.push_back({row.where, row.Integer(0), {row.cells.begin() + 1, row.cells.end()}});
    }
}

void SensorTable::ReadValues(const fs::path &path) {
    for (const TextRow &row : ReadTextTable(path, {"Roles", "Value", "Name"})) {
        NamedValue named{row.where, Words(row.cells[0]), row.Integer(1), row.cells[2]};
        CheckValue(named);
        values_.push_back(std::move(named));
    }
}

void SensorTable::CheckValue(const NamedValue &named) const {
    CheckConstantName(named.where, named.name);
    if (WithRole(named.name) != nullptr || Named(named.name) != nullptr) {
        throw std::runtime_error(named.where + ": the name " + named.name + " is taken already");
    }
    for (const std::string &role : named.roles) {
        const Parameter *parameter = WithRole(role);
        if (parameter == nullptr) {
            throw std::runtime_error(named.where + ": no parameter has the role " + role);
        }
        if (named.value < parameter->min || named.value > parameter->max) {
            throw std::runtime_error(named.where + ": " + role + " can't be " + std::to_string(named.value));
        }
    }
}

const Parameter *SensorTable::WithRole(std::string_view role) const {
    return role.empty() ? nullptr : Find(parameters_, &Parameter::role, role);
}

const NamedValue *SensorTable::Named(std::string_view name) const {
    return Find(values_, &NamedValue::name, name);
}

std::string SensorTable::UnitText(const Parameter &parameter, std::int64_t value) const {
    if (!std::in_range<std::size_t>(parameter.unit) || !std::in_range<std::size_t>(value) ||
        static_cast<std::size_t>(parameter.unit) >= units_.size()) {
        return {};
    }
    const std::vector<std::string> &texts = units_[static_cast<std::size_t>(parameter.unit)].texts;
    const auto at = static_cast<std::size_t>(value);
    return at < texts.size() ? texts[at] : std::string();
}

} // namespace ztv

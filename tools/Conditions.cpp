#include "tools/Conditions.h"

#include "model/UnitClass.h"
#include "tools/TextTable.h"

#include <algorithm>
#include <charconv>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <stdexcept>
#include <system_error>
#include <utility>

namespace ztv {

namespace {

using Number = std::int64_t;
using NumberColumn = Number (*)(const Parameter &, const SensorTable &);
using TextColumn = std::string (*)(const Parameter &, const SensorTable &);
using Test = std::function<bool(const Parameter &)>;

std::optional<Number> NumberOf(std::string_view text) {
    Number number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size() ? std::optional(number) : std::nullopt;
}

UnitClass Shown(const Parameter &p) {
    return ClassOfUnit(static_cast<std::int16_t>(p.unit));
}

Number TextCount(const Parameter &p, const SensorTable &table) {
    Number count = 0;
    while (!table.UnitText(p, count).empty()) {
        ++count;
    }
    return count;
}

std::string Suffix(const Parameter &p, const SensorTable &table) {
    return Shown(p) == UnitClass::Suffix ? table.UnitText(p, 0) : std::string();
}

std::string Texts(const Parameter &p, const SensorTable &table) {
    std::string texts;
    if (Shown(p) == UnitClass::TextValued) {
        for (Number value = p.min; value <= std::min<Number>(p.max, TextCount(p, table)); ++value) {
            texts += value > p.min ? "/" : "";
            texts += table.UnitText(p, value);
        }
    }
    return texts;
}

const std::map<std::string, NumberColumn, std::less<>> numberColumns = {
    {"Tag", [](const Parameter &p, const SensorTable &) { return Number(p.number); }},
    {"Min", [](const Parameter &p, const SensorTable &) { return Number(p.min); }},
    {"Max", [](const Parameter &p, const SensorTable &) { return Number(p.max); }},
    {"Preset", [](const Parameter &p, const SensorTable &) { return Number(p.preset); }},
    {"Value", [](const Parameter &p, const SensorTable &) { return Number(p.value); }},
    {"ReadOnly", [](const Parameter &p, const SensorTable &) { return Number(p.readOnly); }},
    {"Signed", [](const Parameter &p, const SensorTable &) { return Number(p.isSigned); }},
    {"Units", [](const Parameter &p, const SensorTable &) { return Number(p.unit); }},
    {"DecimalPlaces", [](const Parameter &p, const SensorTable &) { return Number(p.decimals); }},
    {"Count", [](const Parameter &, const SensorTable &table) { return Number(table.Parameters().size()); }},
    {"NameLength", [](const Parameter &p, const SensorTable &) { return Number(p.name.size()); }},
    {"Shown", [](const Parameter &p, const SensorTable &) { return Number(Shown(p)); }},
    {"TextCount", TextCount},
};

const std::map<std::string, TextColumn, std::less<>> textColumns = {{"Suffix", Suffix}, {"Texts", Texts}};

const std::map<std::string, Number, std::less<>> words = {
    {"no", 0},
    {"yes", 1},
    {"number", Number(UnitClass::None)},
    {"suffix", Number(UnitClass::Suffix)},
    {"text", Number(UnitClass::TextValued)},
};

const std::map<std::string, std::function<bool(Number, Number)>, std::less<>> operators = {
    {"=", std::equal_to<>()},    {"!=", std::not_equal_to<>()}, {"<", std::less<>()},
    {"<=", std::less_equal<>()}, {">", std::greater<>()},       {">=", std::greater_equal<>()},
};

// The condition names a role that no row has.
struct MissingRole : std::runtime_error {
    explicit MissingRole(const std::string &role) : std::runtime_error("no parameter has the role " + role) {}
};

[[noreturn]] void Refuse(const std::string &text, const std::string &why) {
    throw std::runtime_error("\"" + text + "\" " + why);
}

const Parameter &RowOf(const SensorTable &table, const std::string &role) {
    const Parameter *row = table.WithRole(role);
    if (row == nullptr) {
        throw MissingRole(role);
    }
    return *row;
}

// The middle column of conditions.txt.
class ConditionReader {
public:
    explicit ConditionReader(const SensorTable &table) : table_(table) {}

    Test Condition(const std::string &text) const {
        std::vector<Test> groups;
        for (const std::string &group : Split(text, " or ")) {
            groups.push_back(Group(group));
        }
        return [groups](const Parameter &p) {
            return std::any_of(groups.begin(), groups.end(), [&](const Test &test) { return test(p); });
        };
    }

private:
    using Side = std::function<Number(const Parameter &)>;

    Test Group(const std::string &text) const {
        std::vector<Test> comparisons;
        for (const std::string &comparison : Split(text, ",")) {
            comparisons.push_back(Comparison(comparison));
        }
        return [comparisons](const Parameter &p) {
            return std::all_of(comparisons.begin(), comparisons.end(),
                               [&](const Test &test) { return test(p); });
        };
    }

    Test Comparison(const std::string &text) const {
        const std::vector<std::string> parts = Words(text);
        const auto sign = std::find_if(parts.begin(), parts.end(),
                                       [](const std::string &part) { return operators.contains(part); });
        if (sign == parts.begin() || sign == parts.end() || sign + 1 == parts.end()) {
            Refuse(text, "is not a comparison");
        }
        const std::vector<std::string> right(sign + 1, parts.end());
        if (const auto column = textColumns.find(parts.front()); column != textColumns.end()) {
            if (*sign != "=" || sign != parts.begin() + 1 || right.size() != 1) {
                Refuse(text, "is not a comparison of texts");
            }
            return [this, read = column->second, wanted = right.front()](const Parameter &p) {
                return read(p, table_) == wanted;
            };
        }
        return [left = Sum({parts.begin(), sign}), compare = operators.at(*sign),
                other = Sum(right)](const Parameter &p) { return compare(left(p), other(p)); };
    }

    // "operand" or "operand + number"
    Side Sum(const std::vector<std::string> &parts) const {
        if (parts.size() == 1) {
            return Operand(parts[0]);
        }
        if (parts.size() != 3 || parts[1] != "+" || !NumberOf(parts[2])) {
            Refuse(parts.back(), "is not at its place");
        }
        return [first = Operand(parts[0]), more = *NumberOf(parts[2])](const Parameter &p) {
            return first(p) + more;
        };
    }

    Side Operand(const std::string &text) const {
        if (const auto number = NumberOf(text)) {
            return [value = *number](const Parameter &) { return value; };
        }
        if (const auto word = words.find(text); word != words.end()) {
            return [value = word->second](const Parameter &) { return value; };
        }
        if (const NamedValue *named = table_.Named(text)) {
            return [value = Number(named->value)](const Parameter &) { return value; };
        }
        if (const auto point = text.find('.'); point != std::string::npos) {
            return [value = Column(text.substr(point + 1))(RowOf(table_, text.substr(0, point)), table_)](
                       const Parameter &) { return value; };
        }
        return [this, read = Column(text)](const Parameter &p) { return read(p, table_); };
    }

    static NumberColumn Column(const std::string &name) {
        const auto column = numberColumns.find(name);
        if (column == numberColumns.end()) {
            Refuse(name, "is neither a column nor a number");
        }
        return column->second;
    }

    const SensorTable &table_;
};

// The first column of conditions.txt.
class RowsReader {
public:
    explicit RowsReader(const SensorTable &table) : table_(table) {}

    std::vector<const Parameter *> Rows(const std::string &text) {
        std::vector<const Parameter *> rows;
        if (text == "each" || text == "some") {
            Append(rows, 0, Last());
        } else {
            for (const std::string &word : Words(text)) {
                const auto [first, last] = Range(word);
                Append(rows, first, last);
            }
        }
        if (rows.empty()) {
            Refuse(text, "names no row");
        }
        return rows;
    }

    // Returns one message for each role of the table that no condition has named.
    std::vector<std::string> UnnamedRoles() const {
        std::vector<std::string> messages;
        for (const Parameter &p : table_.Parameters()) {
            if (!p.role.empty() && !named_.contains(p.role)) {
                messages.push_back(p.where + ": no condition names the role " + p.role);
            }
        }
        return messages;
    }

private:
    // Returns the first and the last row that a word names.
    std::pair<Number, Number> Range(const std::string &word) {
        if (const auto row = NumberOf(word)) {
            return {*row, *row};
        }
        if (const auto dots = word.find(".."); dots != std::string::npos) {
            return {NumberOfRole(word.substr(0, dots)), NumberOfRole(word.substr(dots + 2))};
        }
        const auto plus = std::min(word.find('+'), word.size());
        const auto more = plus == word.size() ? 0 : NumberOf(std::string_view(word).substr(plus + 1));
        if (!more) {
            Refuse(word, "names no row");
        }
        const Number number = NumberOfRole(word.substr(0, plus)) + *more;
        return {number, number};
    }

    void Append(std::vector<const Parameter *> &rows, Number first, Number last) const {
        if (first < 0 || last > Last()) {
            Refuse(std::to_string(first < 0 ? first : last), "is the number of no row");
        }
        for (Number number = first; number <= last; ++number) {
            rows.push_back(&table_.Parameters()[static_cast<std::size_t>(number)]);
        }
    }

    Number Last() const { return Number(table_.Parameters().size()) - 1; }

    Number NumberOfRole(const std::string &role) {
        named_.insert(role);
        return RowOf(table_, role).number;
    }

    const SensorTable &table_;
    std::set<std::string> named_;
};

class Checker {
public:
    explicit Checker(const SensorTable &table) : conditions_(table), rows_(table) {}

    void Check(const TextRow &line) {
        try {
            const std::vector<const Parameter *> rows = rows_.Rows(line.cells[0]);
            const Test holds = conditions_.Condition(line.cells[1]);
            if (line.cells[0] == "some") {
                CheckSome(line, rows, holds);
            } else {
                CheckAll(line, rows, holds);
            }
        } catch (const MissingRole &fault) {
            if (missing_.insert(fault.what()).second) {
                messages_.push_back(line.where + ": " + fault.what());
            }
        } catch (const std::runtime_error &fault) {
            messages_.push_back(line.where + ": " + fault.what());
        }
    }

    std::vector<std::string> Messages() const {
        std::vector<std::string> all = messages_;
        for (const std::string &message : rows_.UnnamedRoles()) {
            all.push_back(message);
        }
        return all;
    }

private:
    void CheckSome(const TextRow &line, const std::vector<const Parameter *> &rows, const Test &holds) {
        if (std::none_of(rows.begin(), rows.end(), [&](const Parameter *p) { return holds(*p); })) {
            messages_.push_back(line.where + ": " + line.cells[2]);
        }
    }

    void CheckAll(const TextRow &line, const std::vector<const Parameter *> &rows, const Test &holds) {
        for (const Parameter *p : rows) {
            if (!holds(*p)) {
                messages_.push_back(p->where + ": parameter " + std::to_string(p->number) + " (" + p->name +
                                    ") " + line.cells[2]);
            }
        }
    }

    ConditionReader conditions_;
    RowsReader rows_;
    std::set<std::string> missing_;
    std::vector<std::string> messages_;
};

} // namespace

std::vector<std::string> BrokenConditions(const SensorTable &table, const std::filesystem::path &conditions) {
    Checker checker(table);
    for (const TextRow &line : ReadTextTable(conditions, {"Rows", "Condition", "Message"})) {
        checker.Check(line);
    }
    return checker.Messages();
}

} // namespace ztv

// Builds Presets.fil from its two readable tables. Rejects a table that breaks a condition on which the
// program or the sensor relies, so that a bad edit fails the build and not a machine.

#include <SQLiteCpp/SQLiteCpp.h>
#include <SQLiteCpp/VariadicBind.h>

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <filesystem>
#include <fstream>
#include <functional>
#include <initializer_list>
#include <iostream>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

namespace ztv {

namespace {

namespace fs = std::filesystem;

constexpr std::int32_t applicationId = 0x5A545650; // "ZTVP"
constexpr std::int32_t schemaVersion = 1;

struct Parameter {
    std::string where;
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
};

struct Unit {
    std::string where;
    std::int32_t code = 0;
    std::vector<std::string> texts; // always five; empty for a missing one
};

// Reading

struct Row {
    std::string where; // "file:line", the start of every message about the row
    std::vector<std::string> cells;
};

std::string Trimmed(std::string_view text) {
    constexpr std::string_view blanks = " \t\r";
    const auto first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos)
        return {};
    return std::string(text.substr(first, text.find_last_not_of(blanks) - first + 1));
}

std::int32_t Integer(const Row &row, std::size_t column) {
    const std::string &text = row.cells[column];
    std::int32_t result = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), result);
    if (error != std::errc() || end != text.data() + text.size())
        throw std::runtime_error(row.where + ": \"" + text + "\" is not a whole number of 32 bits");
    return result;
}

bool Flag(const Row &row, std::size_t column) {
    const std::string &text = row.cells[column];
    if (text != "yes" && text != "no")
        throw std::runtime_error(row.where + ": \"" + text + "\" is neither \"yes\" nor \"no\"");
    return text == "yes";
}

// Reads the rows of a table with the given number of columns. The first column must count the rows from 0,
// because only a row's place in the database determines its number.
std::vector<Row> ReadTable(const fs::path &path, std::size_t columns) {
    std::ifstream file(path);
    if (!file)
        throw std::runtime_error(path.string() + ": can't be opened");

    std::vector<Row> rows;
    std::string text;
    for (int line = 1; std::getline(file, text); ++line) {
        const std::string content = Trimmed(text);
        if (content.empty() || content.front() == '#')
            continue;

        Row row{path.string() + ":" + std::to_string(line), {}};
        std::string_view rest = text;
        for (auto bar = rest.find('|'); bar != std::string_view::npos; bar = rest.find('|')) {
            row.cells.push_back(Trimmed(rest.substr(0, bar)));
            rest.remove_prefix(bar + 1);
        }
        row.cells.push_back(Trimmed(rest));

        if (row.cells.size() != columns)
            throw std::runtime_error(row.where + ": " + std::to_string(row.cells.size()) + " columns where " +
                                     std::to_string(columns) + " are wanted");
        if (std::any_of(content.begin(), content.end(), [](char c) { return c < ' ' || c > '~'; }))
            throw std::runtime_error(row.where + ": only printable ASCII characters are allowed");
        if (Integer(row, 0) != static_cast<std::int32_t>(rows.size()))
            throw std::runtime_error(row.where + ": row " + row.cells[0] + " stands where row " +
                                     std::to_string(rows.size()) + " is wanted");
        rows.push_back(std::move(row));
    }
    if (file.bad())
        throw std::runtime_error(path.string() + ": can't be read");
    return rows;
}

std::vector<Parameter> ReadParameters(const fs::path &path) {
    std::vector<Parameter> parameters;
    for (const Row &row : ReadTable(path, 10)) {
        Parameter p;
        p.where = row.where;
        p.number = Integer(row, 0);
        p.min = Integer(row, 1);
        p.max = Integer(row, 2);
        p.preset = Integer(row, 3);
        p.value = Integer(row, 4);
        p.readOnly = Flag(row, 5);
        p.isSigned = Flag(row, 6);
        p.unit = Integer(row, 7);
        p.decimals = Integer(row, 8);
        p.name = row.cells[9];
        parameters.push_back(std::move(p));
    }
    return parameters;
}

std::vector<Unit> ReadUnits(const fs::path &path) {
    std::vector<Unit> units;
    for (const Row &row : ReadTable(path, 6))
        units.push_back({row.where, Integer(row, 0), {row.cells.begin() + 1, row.cells.end()}});
    return units;
}

// Checking

constexpr int inch = 1;
constexpr int volt = 3;
constexpr std::size_t unitRows = 14;
constexpr std::size_t namedRows = 91; // the program knows parameters up to 90 by number
constexpr std::size_t mostRows = 124; // row 0 is not transferred, and a write frame holds 123 registers
constexpr std::int32_t addressMark = 0x5555; // in register 69: the sensor numbers registers like parameters
constexpr std::int32_t rangeGap = 106;       // least distance between Min Range and Near Distance
constexpr std::int32_t wizardMargin = 500;   // the wizard's margin beyond both ends

bool IsSuffixUnit(int code) {
    return code == 1 || code == 3 || code == 4 || code == 12;
}

bool IsTextUnit(int code) {
    return code == 2 || (code >= 5 && code <= 11) || code == 13;
}

class Checker {
public:
    Checker(const std::vector<Parameter> &parameters, const std::vector<Unit> &units)
        : parameters_(parameters),
          units_(units) {}

    // Returns one message for each violated condition.
    const std::vector<std::string> &Failures() const { return failures_; }

    void Conditions();

private:
    using Test = std::function<bool(const Parameter &)>;
    using UnitTest = std::function<bool(const Unit &)>;

    void That(bool holds, const std::string &rule) {
        if (!holds)
            failures_.push_back(rule);
    }
    void One(const Parameter &p, const std::string &rule, bool holds) {
        That(holds, p.where + ": parameter " + std::to_string(p.number) + " (" + p.name + ") " + rule);
    }
    void All(const std::string &rule, const Test &test) {
        for (const Parameter &p : parameters_)
            One(p, rule, test(p));
    }
    void Each(std::initializer_list<std::size_t> numbers, const std::string &rule, const Test &test) {
        for (const std::size_t number : numbers)
            One(parameters_[number], rule, test(parameters_[number]));
    }
    void Units(const std::string &rule, const UnitTest &test) {
        for (const Unit &u : units_)
            That(test(u), u.where + ": unit " + std::to_string(u.code) + " " + rule);
    }
    // Returns the texts of a text-valued parameter, from that of Min to that of Max.
    std::vector<std::string> Choices(const Parameter &p) const {
        const std::vector<std::string> &texts = units_[static_cast<std::size_t>(p.unit)].texts;
        return {texts.begin() + p.min, texts.begin() + p.max + 1};
    }

    const std::vector<Parameter> &parameters_;
    const std::vector<Unit> &units_;
    std::vector<std::string> failures_;
};

void Checker::Conditions() {
    using P = const Parameter &;
    using U = const Unit &;
    using Texts = std::vector<std::string>;

    // Tests sizes and codes first, because the other conditions look up rows by number.
    That(parameters_.size() >= namedRows, "there must be at least 91 parameters");
    That(parameters_.size() <= mostRows, "there must be at most 124 parameters");
    That(units_.size() >= unitRows, "there must be at least 14 units");
    if (!failures_.empty())
        return;
    All("must name a unit from 0 to 13", [](P p) { return p.unit >= 0 && p.unit < int(unitRows); });
    if (!failures_.empty())
        return;

    // Units
    Units("must have one character in UnitText0 and nothing else", [](U u) {
        return !IsSuffixUnit(u.code) ||
               (u.texts[0].size() == 1 &&
                std::all_of(u.texts.begin() + 1, u.texts.end(), [](auto &t) { return t.empty(); }));
    });
    Units("must have a text for the value 0", [](U u) { return !IsTextUnit(u.code) || !u.texts[0].empty(); });
    Units("must have no gap between its texts", [](U u) {
        return std::is_partitioned(u.texts.begin(), u.texts.end(), [](auto &t) { return !t.empty(); });
    });
    Units("must have no text twice", [](U u) {
        std::set<std::string> seen;
        return std::all_of(u.texts.begin(), u.texts.end(),
                           [&](auto &t) { return t.empty() || seen.insert(t).second; });
    });
    Units("has no use for texts",
          [](U u) { return IsSuffixUnit(u.code) || IsTextUnit(u.code) || u.texts[0].empty(); });
    Units("must be the inch mark", [](U u) { return u.code != inch || u.texts[0] == "\""; });
    Units("must be the volt", [](U u) { return u.code != volt || u.texts[0] == "V"; });
    Units("must be the inch, which settings files name",
          [](U u) { return u.code != 10 || u.texts[0] == "Inches"; });

    // Every parameter
    std::set<std::string> names;
    All("must have a name of 1 to 32 characters", [](P p) { return !p.name.empty() && p.name.size() <= 32; });
    All("must have a name of its own", [&](P p) { return names.insert(p.name).second; });
    All("must have 0 to 3 decimal places", [](P p) { return p.decimals >= 0 && p.decimals <= 3; });
    All("must fit a 16-bit register",
        [](P p) { return p.isSigned ? p.min >= -32768 && p.max <= 32767 : p.min >= 0 && p.max <= 65535; });
    All("must have its preset within its limits", [](P p) { return p.min <= p.preset && p.preset <= p.max; });
    All("must have its value within its limits", [](P p) { return p.min <= p.value && p.value <= p.max; });
    All("must start at its preset unless read-only", [](P p) { return p.readOnly || p.value == p.preset; });
    All("must be unsigned and without decimals, for its number is a text",
        [](P p) { return !IsTextUnit(p.unit) || (!p.isSigned && p.decimals == 0); });
    All("must have limits from 0 to 4 at most, for its number is a text",
        [](P p) { return !IsTextUnit(p.unit) || (p.min == 0 && p.max >= 0 && p.max <= 4); });
    if (!failures_.empty())
        return;
    All("must have a text for every value", [&](P p) {
        return !IsTextUnit(p.unit) || !units_[std::size_t(p.unit)].texts[std::size_t(p.max)].empty();
    });
    That(std::any_of(parameters_.begin(), parameters_.end(), [](P p) { return p.isSigned; }),
         "one parameter at least must be signed");
    for (const int decimals : {1, 2, 3})
        That(std::any_of(parameters_.begin(), parameters_.end(), [=](P p) { return p.decimals == decimals; }),
             "one parameter at least must have " + std::to_string(decimals) + " decimal places");

    // Parameters that the program writes, and those that it only shows
    Each({1,  3,  20, 21, 22, 23, 24, 25, 28, 29, 33, 34, 36, 37, 39, 40, 54, 55,
          56, 57, 58, 59, 65, 66, 67, 68, 81, 82, 83, 84, 85, 86, 87, 88, 89, 90},
         "must be writable", [](P p) { return !p.readOnly; });
    Each({0, 6, 7, 8, 9, 11, 12, 18, 19, 32, 38, 46, 48, 60, 61, 69}, "must be read-only",
         [](P p) { return p.readOnly; });
    Each({6, 7, 8, 9, 11, 12}, "must have its value as preset, for it names the sensor",
         [](P p) { return p.value == p.preset; });
    Each({20, 21, 22, 24, 25, 28, 29, 32, 33, 34, 36, 37, 40, 46, 48, 65, 66, 67, 68, 69}, "must be unsigned",
         [](P p) { return !p.isSigned; });

    // Commands, identity and network
    Each({1, 3, 21, 22, 65, 68, 69}, "must be a bare number",
         [](P p) { return p.unit == 0 && p.decimals == 0; });
    Each({1}, "must take 0 and 1 and be 0 at rest",
         [](P p) { return p.min == 0 && p.max == 1 && p.preset == 0; });
    Each({3}, "must take 0 to 99 and be 0 at rest",
         [](P p) { return p.min == 0 && p.max == 99 && p.preset == 0; });
    Each({12}, "must hold the number of parameters",
         [&](P p) { return p.value == std::int32_t(parameters_.size()); });
    Each({12}, "must not be changed by a file", [](P p) { return p.min == p.value && p.max == p.value; });
    Each({21, 22}, "must take a whole 16-bit word", [](P p) { return p.min == 0 && p.max == 65535; });
    Each({65}, "must take 1 to 247 with the preset 1",
         [](P p) { return p.min == 1 && p.max == 247 && p.preset == 1; });
    Each({66}, "must list the baud rates", [&](P p) {
        return IsTextUnit(p.unit) && Choices(p) == Texts{"2400", "4800", "9600", "19200", "38400"};
    });
    Each({66}, "must have the preset 38400", [](P p) { return p.preset == 4; });
    Each({67}, "must list the parities", [&](P p) {
        return IsTextUnit(p.unit) && Choices(p) == Texts{"N1", "N2", "E1", "O1"};
    });
    Each({67}, "must have the preset N2", [](P p) { return p.preset == 1; });
    Each({68}, "must take 0 and 1 with the preset 1",
         [](P p) { return p.min == 0 && p.max == 1 && p.preset == 1; });
    Each({69}, "must hold the mark and nothing else",
         [](P p) { return p.min == addressMark && p.max == addressMark; });
    Each({70}, "must never hold the mark of 69",
         [](P p) { return p.max < addressMark || p.min > addressMark; });

    // Inputs, outputs and modes
    Each({18, 19, 20, 23, 38, 54, 55, 60, 61}, "must take 0 and 1",
         [](P p) { return p.min == 0 && p.max == 1; });
    Each({18, 19, 20, 23, 38, 54, 55, 60, 61}, "must be shown as a text",
         [](P p) { return IsTextUnit(p.unit); });
    Each({20}, "must list the clocks", [&](P p) {
        return IsTextUnit(p.unit) && Choices(p) == Texts{"Internal", "External"};
    });
    Each({39}, "must list the output modes", [&](P p) {
        return IsTextUnit(p.unit) && Choices(p) == Texts{"Manual", "Linear", "Hyperbolic"};
    });
    Each({39}, "must have the preset Linear", [](P p) { return p.preset == 1; });
    Each({36, 37, 46, 48}, "must be in volts with two decimals",
         [](P p) { return p.unit == volt && p.decimals == 2; });
    Each({36, 37}, "must take 0.00 to 10.00 V", [](P p) { return p.min == 0 && p.max == 1000; });
    Each({36}, "must have the preset 0.00 V", [](P p) { return p.preset == 0; });
    Each({37}, "must have the preset 10.00 V", [](P p) { return p.preset == 1000; });
    Each({40, 81, 82, 83, 84, 85, 86, 87, 88, 89, 90}, "must be a bare number",
         [](P p) { return p.unit == 0 && p.decimals == 0; });
    Each({40, 81, 82, 83, 84, 85, 86, 87, 88, 89, 90}, "must take the 12 bits of the output stage",
         [](P p) { return p.min == 0 && p.max == 4095; });

    // Distances and diameters
    const auto preset = [&](std::size_t number) { return parameters_[number].preset; };
    Each({24, 25, 28, 29, 32, 33, 34, 56, 57, 58, 59}, "must be in inches with two decimals",
         [](P p) { return p.unit == inch && p.decimals == 2; });
    Each({24, 25, 28, 29, 56, 57, 58, 59}, "must take 6.00 to 420.00 inches",
         [](P p) { return p.min == 600 && p.max == 42000; });
    Each({32}, "must take any register", [](P p) { return p.min == 0 && p.max == 65535; });
    Each({33, 34}, "must take 0.01 to 200.00 inches", [](P p) { return p.min == 1 && p.max == 20000; });
    Each({24}, "must have the least distance as preset", [](P p) { return p.preset == p.min; });
    Each({25}, "must have the greatest distance as preset", [](P p) { return p.preset == p.max; });
    Each({28}, "must have a preset clear of the one of 24",
         [&](P p) { return p.preset >= preset(24) + rangeGap; });
    Each({29}, "must have a preset between those of 28 and 25",
         [&](P p) { return p.preset > preset(28) && p.preset <= preset(25); });
    Each({28}, "must have a preset that leaves the wizard room below 49.50 inches",
         [](P p) { return p.preset <= 4950 - wizardMargin; });
    Each({29}, "must have a preset that leaves the wizard room above 60.00 inches",
         [](P p) { return p.preset >= 6000 + wizardMargin; });
    Each({33}, "must have a preset below the one of 34", [&](P p) { return p.preset < preset(34); });
    Each({56, 57, 58, 59}, "must have a preset within those of 24 and 25",
         [&](P p) { return p.preset >= preset(24) && p.preset <= preset(25); });
    That(std::set<std::int32_t>{preset(56), preset(57), preset(58), preset(59)}.size() == 4,
         "the relay thresholds 56 to 59 must have presets that differ");
}

// Writing

// Keeps the journal in memory, because the file is put in place only when it is complete.
void FillDatabase(const fs::path &path, const std::vector<Parameter> &parameters,
                  const std::vector<Unit> &units) {
    SQLite::Database db(path.string(), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
    db.exec("PRAGMA journal_mode = MEMORY");
    db.exec("PRAGMA page_size = 4096");
    db.exec("PRAGMA application_id = " + std::to_string(applicationId));
    db.exec("PRAGMA user_version = " + std::to_string(schemaVersion));

    SQLite::Transaction transaction(db);
    db.exec(
        "CREATE TABLE Parameters (\"Min\" INTEGER, \"Max\" INTEGER, \"Preset\" INTEGER, \"Value\" INTEGER,"
        " \"ReadOnly\" INTEGER, \"Signed\" INTEGER, \"Name\" TEXT, \"Units\" INTEGER, \"DecimalPlaces\" "
        "INTEGER)");
    db.exec(
        "CREATE TABLE Units (\"UnitText0\" TEXT, \"UnitText1\" TEXT, \"UnitText2\" TEXT, \"UnitText3\" TEXT,"
        " \"UnitText4\" TEXT)");

    SQLite::Statement addParameter(db, "INSERT INTO Parameters VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?)");
    for (const Parameter &p : parameters) {
        SQLite::bind(addParameter, p.min, p.max, p.preset, p.value, p.readOnly ? -1 : 0, p.isSigned ? -1 : 0,
                     p.name, p.unit, p.decimals);
        addParameter.exec();
        addParameter.reset();
    }

    SQLite::Statement addUnit(db, "INSERT INTO Units VALUES (?, ?, ?, ?, ?)");
    for (const Unit &u : units) {
        for (std::size_t column = 0; column < u.texts.size(); ++column) {
            const int index = static_cast<int>(column) + 1;
            if (u.texts[column].empty())
                addUnit.bind(index);
            else
                addUnit.bind(index, u.texts[column]);
        }
        addUnit.exec();
        addUnit.reset();
    }
    transaction.commit();
}

void WriteDatabase(const fs::path &output, const std::vector<Parameter> &parameters,
                   const std::vector<Unit> &units) {
    fs::path unfinished = output;
    unfinished += ".new";
    fs::remove(unfinished);
    try {
        FillDatabase(unfinished, parameters, units);
        fs::rename(unfinished, output);
    } catch (const std::exception &fault) {
        std::error_code ignored;
        fs::remove(unfinished, ignored);
        throw std::runtime_error(output.string() + ": " + fault.what());
    }
}

} // namespace

} // namespace ztv

using namespace ztv;

int main(int argc, char *argv[]) {
    if (argc != 4) {
        std::cerr << "Usage: build-presets PARAMETERS.txt UNITS.txt OUTPUT\n";
        return 1;
    }
    try {
        const std::vector<Parameter> parameters = ReadParameters(argv[1]);
        const std::vector<Unit> units = ReadUnits(argv[2]);

        Checker checker(parameters, units);
        checker.Conditions();
        for (const std::string &failure : checker.Failures())
            std::cerr << failure << "\n";
        if (!checker.Failures().empty())
            return 1;

        WriteDatabase(argv[3], parameters, units);
        return 0;
    } catch (const std::exception &fault) {
        std::cerr << fault.what() << "\n";
        return 1;
    }
}

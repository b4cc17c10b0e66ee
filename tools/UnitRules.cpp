#include "tools/UnitRules.h"

#include "model/UnitClass.h"

#include <algorithm>
#include <set>

namespace ztv {

namespace {

using Texts = std::vector<std::string>;

struct Rule {
    const char *message;
    bool (*holds)(UnitClass shown, const Texts &texts);
};

bool IsEmpty(const std::string &text) {
    return text.empty();
}

bool AreOneSuffix(const Texts &texts) {
    return texts[0].size() == 1 && std::all_of(texts.begin() + 1, texts.end(), IsEmpty);
}

bool HaveNoGap(const Texts &texts) {
    return std::is_partitioned(texts.begin(), texts.end(), [](const auto &text) { return !IsEmpty(text); });
}

bool Differ(const Texts &texts) {
    std::set<std::string> seen;
    return std::all_of(texts.begin(), texts.end(),
                       [&](const auto &text) { return IsEmpty(text) || seen.insert(text).second; });
}

constexpr Rule rules[] = {
    {"must have one character in UnitText0 and nothing else",
     [](UnitClass shown, const Texts &texts) { return shown != UnitClass::Suffix || AreOneSuffix(texts); }},
    {"must have a text for the value 0",
     [](UnitClass shown, const Texts &texts) {
         return shown != UnitClass::TextValued || !IsEmpty(texts[0]);
     }},
    {"must have no gap between its texts", [](UnitClass, const Texts &texts) { return HaveNoGap(texts); }},
    {"must have no text twice", [](UnitClass, const Texts &texts) { return Differ(texts); }},
    {"has no use for texts",
     [](UnitClass shown, const Texts &texts) { return shown != UnitClass::None || IsEmpty(texts[0]); }},
};

} // namespace

std::vector<std::string> BrokenUnitRules(const SensorTable &table) {
    std::vector<std::string> messages;
    const auto report = [&](const Unit &unit, const std::string &rule) {
        messages.push_back(unit.where + ": unit " + std::to_string(unit.code) + " " + rule);
    };
    for (const Unit &unit : table.Units()) {
        const UnitClass shown = ClassOfUnit(static_cast<std::int16_t>(unit.code));
        for (const Rule &rule : rules) {
            if (!rule.holds(shown, unit.texts)) {
                report(unit, rule.message);
            }
        }
        if (unit.code == displayUnit && unit.texts[0] != "Inches") {
            report(unit, "must be the inch, which settings files name");
        }
    }
    if (static_cast<int>(table.Units().size()) < unitCodes) {
        messages.push_back("there must be at least " + std::to_string(unitCodes) + " units");
    }
    return messages;
}

} // namespace ztv

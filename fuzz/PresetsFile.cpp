// Fuzzes the reading of the presets. An input is a Presets.fil.

#include "model/PresetsFile.h"

#include "fuzz/DatabaseMutator.h"
#include "fuzz/Harness.h"
#include "model/ClassZentrova.h"
#include "support/Fault.h"

#include <array>
#include <optional>

namespace ztv {

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t *data, std::size_t size, std::size_t most)
    __attribute__((weak));
extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t *data, std::size_t size, std::size_t most,
                                               unsigned seed);

namespace {

constexpr qsizetype longestText = 4096;

std::optional<Presets> Read(const QString &path) {
    try {
        return ReadPresetsFile(path);
    } catch (const Fault &fault) {
        REQUIRE(fault.Cause() == Fault::Kind::Database);
        REQUIRE(fault.Description().startsWith(path));
        return std::nullopt;
    }
}

void CheckPresets(const Presets &presets) {
    REQUIRE(!presets.rows.empty() && presets.rows.size() <= 32767);
    REQUIRE(!presets.units.empty() && presets.units.size() <= 32767);
    for (const PresetRow &row : presets.rows) {
        REQUIRE(row.name.size() <= longestText);
    }
    for (const UnitTexts &texts : presets.units) {
        REQUIRE(texts.back().isEmpty());
        for (const QString &text : texts) {
            REQUIRE(text.size() <= longestText);
        }
    }
}

// With unchecked presets, each value must either be shown or raise a fault that says why not.
void CheckTable(const ClassZentrova &zentrova, const Presets &presets) {
    REQUIRE(zentrova.ParamCount() == static_cast<std::int16_t>(presets.rows.size()));
    for (std::int16_t tag = 0; tag < zentrova.ParamCount(); ++tag) {
        const PresetRow &row = presets.rows[static_cast<std::size_t>(tag)];
        REQUIRE(zentrova.ParamValue(tag) == row.value && zentrova.ParamName(tag) == row.name);
        for (const std::int32_t value : {row.value, row.minimum, row.maximum, row.preset}) {
            try {
                zentrova.FormatRaw(value, tag);
            } catch (const Fault &fault) {
                REQUIRE(fault.Cause() == Fault::Kind::Subscript || fault.Cause() == Fault::Kind::Overflow);
            }
        }
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    static const Fuzz::Folder folder;
    const QString path = folder.Path("Presets.fil");
    const QByteArray content = Fuzz::Bytes(data, size);
    Fuzz::WriteFile(path, content);
    if (const std::optional<Presets> presets = Read(path)) {
        CheckPresets(*presets);
        CheckTable(ClassZentrova(folder.Itself()), *presets);
    }
    REQUIRE(Fuzz::ReadFile(path) == content);
    REQUIRE(folder.FileCount() == 1);
    return 0;
}

std::size_t LLVMFuzzerCustomMutator(std::uint8_t *data, std::size_t size, std::size_t most, unsigned seed) {
    static constexpr std::array columns = {
        TableColumn{"Parameters", "Value"}, TableColumn{"Parameters", "Min"},
        TableColumn{"Parameters", "Name"},  TableColumn{"Parameters", "Units"},
        TableColumn{"Parameters", "Max"},   TableColumn{"Parameters", "DecimalPlaces"},
        TableColumn{"Units", "UnitText0"},  TableColumn{"Units", "UnitText3"},
    };
    const bool byTheFormat = seed % 2 == 0 && MutateDatabase(data, size, most, seed / 2, columns);
    return byTheFormat ? size : LLVMFuzzerMutate(data, size, most);
}

} // namespace ztv

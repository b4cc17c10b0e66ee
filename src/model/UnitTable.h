#pragma once

#include "model/CheckedAt.h"
#include "model/PresetsFile.h"

#include <QString>
#include <cstdint>
#include <utility>
#include <vector>

namespace ztv {

// The texts of the unit codes.
class UnitTable {
public:
    UnitTable() = default;
    explicit UnitTable(std::vector<UnitTexts> texts) : texts_(std::move(texts)) {}

    // Returns the text of a unit code for a value; for a suffix unit, the suffix is the text for 0. Fault
    // (subscript) where there is none.
    const QString &Text(std::int16_t unitCode, std::int32_t value) const {
        return CheckedAt(CheckedAt(texts_, unitCode, "unit"), value, "unit text");
    }

private:
    std::vector<UnitTexts> texts_;
};

} // namespace ztv

#pragma once

#include <QString>
#include <cstdint>
#include <optional>

namespace ztv {

class UnitTable;

// Formats and parses the values of one row of the parameter table: its decimal places, its unit, and its
// maximum, above which a text-valued row shows the text of the maximum. Must not outlive the units.
class ValueFormat {
public:
    struct Row {
        std::int16_t decimalPlaces = 0; // 1 to 3 scale the raw value; any other count leaves it as it is
        std::int16_t unitCode = 0;
        std::int32_t maximum = 0;
    };

    ValueFormat(const Row &row, const UnitTable &units) : row_(row), units_(units) {}

    // Returns the displayed text of a raw value: scaled, with its unit. Fault (subscript) when the unit has
    // no text for it.
    QString Format(std::int32_t raw) const { return WithUnits(Scaled(raw, row_.decimalPlaces)); }

    // Returns the raw value of a numeric text. Fault (conversion, overflow) for any other text.
    std::int32_t Parse(const QString &text) const;

    // Returns a number text with the unit: followed by the suffix, or replaced by the text for the number.
    QString WithUnits(const QString &number) const;

    // Removes the one-character unit suffix from a text, in either case of letters.
    QString WithoutSuffix(const QString &text) const;

    // Returns a numeric text with exactly the decimal places; any other text unchanged.
    QString ToDecimals(const QString &text) const;

    // Returns the number text of a raw value: scaled for 1 to 3 decimal places, plain for any other.
    static QString Scaled(std::int32_t raw, std::int16_t decimalPlaces);

    // Returns the whole number that a numeric text gives without its decimal point; nothing for an empty
    // text.
    static std::optional<std::int32_t> Unscaled(const QString &text);

private:
    Row row_;
    const UnitTable &units_;
};

} // namespace ztv

// Fuzzes the three forms of a value, with the shipped table. An input is a sequence of steps: a word from the
// sensor for a row, a raw value to format, a text typed for a row, or a number to map.

#include "fuzz/Harness.h"
#include "model/ClassZentrova.h"
#include "model/Global.h"
#include "model/UnitClass.h"
#include "support/Fault.h"
#include "support/Numbers.h"
#include "tabs/EntryRules.h"

#include <algorithm>

namespace ztv {

namespace {

const ClassZentrova &Shipped() {
    static const ClassZentrova zentrova(QStringLiteral(ZTV_BIN_DIR));
    return zentrova;
}

void CheckRaw(const ClassZentrova &zentrova, std::int32_t raw, std::int16_t tag) {
    const std::int16_t places = zentrova.ParamDecimalPlaces(tag);
    const QString number = Global::RawToFormatted(raw, places);
    REQUIRE(IsNumeric(number));
    REQUIRE(number.size() - 1 - number.indexOf(u'.') == (places == 0 ? number.size() : places));
    REQUIRE(Global::FormattedToRaw(zentrova, number, tag) == raw);
    REQUIRE(Global::FormatToDecimals(zentrova, number, tag) == number);
    REQUIRE(Global::RemoveDecimalPoint(number) == raw);

    const UnitClass unit = ClassOfUnit(zentrova.ParamUnits(tag));
    try {
        const QString text = zentrova.FormatRaw(raw, tag);
        REQUIRE(unit != UnitClass::None || text == number);
        REQUIRE(unit != UnitClass::Suffix ||
                Global::StripUnitSuffix(zentrova, text, tag) == number); // every suffix is one character
        REQUIRE(unit != UnitClass::TextValued ||
                text == zentrova.FormatRaw(std::min(raw, zentrova.ParamMax(tag)), tag));
    } catch (const Fault &fault) {
        REQUIRE(unit == UnitClass::TextValued && raw < 0 && fault.Cause() == Fault::Kind::Subscript);
    }
}

// Every word that a sensor sends can be shown, and converts back to the same word.
void CheckWord(ClassZentrova &zentrova, std::int16_t word, std::int16_t tag) {
    const std::int32_t widened = Global::UnsignedFromSigned(word);
    REQUIRE(widened >= 0 && widened <= 65535 && Global::SignedFromUnsigned(widened) == word);
    zentrova.ParamUpdate(tag, zentrova.ParamSigned(tag) ? word : widened);
    const std::int32_t value = zentrova.ParamValue(tag);
    REQUIRE(Global::SignedFromUnsigned(value) == word);
    REQUIRE(!zentrova.FormatRaw(value, tag).isNull());
    CheckRaw(zentrova, value, tag);
}

// Deliberate: a value above 32767 loses 65536, even if it doesn't fit a word.
void CheckNarrowing(std::int32_t value) {
    constexpr std::int32_t largest = 32767 + 65536;
    try {
        const std::int16_t word = Global::SignedFromUnsigned(value);
        REQUIRE(value >= -32768 && value <= largest);
        REQUIRE((value & 0xFFFF) == Global::UnsignedFromSigned(word));
    } catch (const Fault &fault) {
        REQUIRE((value < -32768 || value > largest) && fault.Cause() == Fault::Kind::Overflow);
    }
}

void CheckTyped(const ClassZentrova &zentrova, const QString &text, std::int16_t tag) {
    const QString shown = Global::FormatToDecimals(zentrova, text, tag);
    REQUIRE(Global::FormatToDecimals(zentrova, shown, tag) == shown);
    REQUIRE(IsNumeric(text) == IsNumeric(shown));
    try {
        const std::int32_t raw = Global::FormattedToRaw(zentrova, text, tag);
        REQUIRE(IsNumeric(text));
        REQUIRE(ToNumber(Global::RawToFormatted(raw, zentrova.ParamDecimalPlaces(tag))) == ToNumber(shown));
    } catch (const Fault &fault) {
        REQUIRE(fault.Cause() == (IsNumeric(text) ? Fault::Kind::Overflow : Fault::Kind::Conversion));
    }
    const QString stripped = Global::StripUnitSuffix(zentrova, text, tag);
    REQUIRE(text.startsWith(stripped) && text.size() - stripped.size() <= 1);
}

// A typed text is either accepted within the row's limits, or refused with a box and the table unchanged.
void CheckEntry(ClassZentrova &zentrova, const QString &text, std::int16_t tag) {
    Fuzz::CountingDialogs dialogs;
    EntryRules rules(zentrova, dialogs);
    const std::int32_t old = zentrova.ParamValue(tag);
    const bool taken = rules.ValidateAndWriteText(text, tag);
    const std::int32_t value = zentrova.ParamValue(tag);
    REQUIRE(dialogs.boxes == (taken ? 0 : 1));
    REQUIRE(taken || value == old);
    REQUIRE(value == old || (value >= zentrova.ParamMin(tag) && value <= zentrova.ParamMax(tag)));
    REQUIRE(value == old || !zentrova.ParamReadOnly(tag));
}

void CheckMap(Fuzz::Input &input) {
    const double x = input.Int32();
    const double x0 = input.Int32();
    const double x1 = input.Int32();
    const double y0 = input.Int32();
    const double y1 = input.Int32();
    const double y = Global::InterpolateClipped(x, x0, x1, y0, y1);
    constexpr double roundingError = 1e-5;
    REQUIRE(y >= std::min(y0, y1) - roundingError && y <= std::max(y0, y1) + roundingError);
    REQUIRE(x > x0 || y == y0);
    REQUIRE(x <= x0 || x < x1 || y == y1);
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    Fuzz::Input input(data, size);
    ClassZentrova zentrova = Shipped();
    while (!input.AtEnd()) {
        const std::uint8_t kind = input.Below(4);
        const auto tag = static_cast<std::int16_t>(input.Below(zentrova.ParamCount()));
        if (kind == 0) {
            CheckWord(zentrova, static_cast<std::int16_t>(input.Word()), tag);
        } else if (kind == 1) {
            const std::int32_t raw = input.Int32();
            CheckRaw(zentrova, raw, tag);
            CheckNarrowing(raw);
            CheckNarrowing(raw >> 12);
        } else if (kind == 2) {
            const QString text = QString::fromUtf8(input.Take(input.Byte()));
            CheckTyped(zentrova, text, tag);
            CheckEntry(zentrova, text, tag);
        } else {
            CheckMap(input);
        }
    }
    return 0;
}

} // namespace ztv

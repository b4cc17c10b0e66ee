#include "link/StoredComm.h"

#include "model/LineTables.h"
#include "support/Fault.h"
#include "support/Numbers.h"

#include <algorithm>
#include <array>

namespace ztv {

namespace {

struct OptionKey {
    const char *key;
    std::int16_t CommSettings::*member;
    std::int16_t lowest;
    std::int16_t highest;
};

constexpr std::array optionKeys = {
    OptionKey{"CommPort", &CommSettings::port, 1, 255},
    OptionKey{"BaudRate", &CommSettings::baud, 0, HighestBaud},
    OptionKey{"ParityStop", &CommSettings::parityStop, 0, HighestParityStop},
    OptionKey{"NetworkAddress", &CommSettings::address, 1, 247},
};

QString Options() {
    return QStringLiteral("Options");
}

// Deliberate: such a number ends the program, although one that is only out of range doesn't.
Fault NumberTooLarge(const SettingsStore &store, const QString &section, const QString &key,
                     const QString &text) {
    return Fault(
        Fault::Kind::Overflow,
        QStringLiteral("Overflow: the setting \"%1\" of section \"%2\" holds %3, which isn't within -32768 "
                       "to 32767.\n\nThe settings are kept in\n%4\n\nTo delete all of them, start the "
                       "program with /CLEARREG or with the Ctrl key held down.")
            .arg(key, section, text, store.Place()));
}

} // namespace

std::int16_t ReadRegistryInteger(const SettingsStore &store, const QString &section, const QString &key,
                                 std::int16_t lowest, std::int16_t highest, std::int16_t fallback) {
    const QString text = store.Read(section, key, QString::number(fallback));
    if (!IsNumeric(text)) {
        return fallback;
    }
    try {
        return std::clamp(ToInt16(ToNumber(text)), lowest, highest);
    } catch (const Fault &) {
        throw NumberTooLarge(store, section, key, text);
    }
}

CommSettings ReadCommSettings(const SettingsStore &store) {
    CommSettings settings;
    for (const OptionKey &option : optionKeys) {
        std::int16_t &value = settings.*option.member;
        value = ReadRegistryInteger(store, Options(), QString::fromLatin1(option.key), option.lowest,
                                    option.highest, value);
    }
    return settings;
}

bool WriteCommSettings(SettingsStore &store, const CommSettings &settings) {
    bool stored = true;
    for (const OptionKey &option : optionKeys) {
        stored =
            store.Write(Options(), QString::fromLatin1(option.key), QString::number(settings.*option.member));
    }
    return stored; // the last write stores all
}

} // namespace ztv

#include "shell/StoredSettings.h"

#include "support/Numbers.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace ztv {

namespace {

struct PlaceKey {
    const char *key;
    double WindowPlace::*member;
};

constexpr std::array placeKeys = {
    PlaceKey{"Top", &WindowPlace::top},
    PlaceKey{"Left", &WindowPlace::left},
    PlaceKey{"Height", &WindowPlace::height},
    PlaceKey{"Width", &WindowPlace::width},
};

constexpr double farthestTwips = 1'000'000; // beyond any screen

QString Startup() {
    return QStringLiteral("Startup");
}
QString WindowStateKey() {
    return QStringLiteral("WindowState");
}

} // namespace

WindowPlace ReadWindowPlace(const SettingsStore &store) {
    WindowPlace place;
    for (const PlaceKey &entry : placeKeys) {
        const QString text = store.Read(Startup(), QString::fromLatin1(entry.key), QString());
        if (IsNumeric(text)) {
            place.*entry.member = std::clamp(ToNumber(text), -farthestTwips, farthestTwips);
        }
    }
    return place;
}

bool WriteWindowPlace(SettingsStore &store, const WindowPlace &place) {
    bool stored = true;
    for (const PlaceKey &entry : placeKeys) {
        stored = store.Write(Startup(), QString::fromLatin1(entry.key),
                             QString::number(std::lround(place.*entry.member)));
    }
    return stored;
}

WindowState ReadWindowState(const SettingsStore &store) {
    const QString text = store.Read(Startup(), WindowStateKey(), QString());
    const double state = IsNumeric(text) ? ToNumber(text) : 0;
    if (state == 1) {
        return WindowState::Minimised;
    }
    return state == 2 ? WindowState::Maximised : WindowState::Normal;
}

bool WriteWindowState(SettingsStore &store, WindowState state) {
    return store.Write(Startup(), WindowStateKey(), QString::number(static_cast<int>(state)));
}

} // namespace ztv

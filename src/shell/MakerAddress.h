#pragma once

#include "support/SettingsStore.h"

#include <QString>
#include <QUrl>

// The maker's address on the web: the setting "Maker"/"WebAddress", which whoever ships the program fills in.
inline QUrl MakerAddress(const SettingsStore &settings) {
    return QUrl(settings.Read(QStringLiteral("Maker"), QStringLiteral("WebAddress"),
                              QStringLiteral("https://www.halvern.example/")));
}

#pragma once

#include "support/SettingsStore.h"

#include <QString>
#include <QUrl>

// The maker's address on the web: the setting "Maker"/"WebAddress", which whoever ships the program fills in.
inline QUrl MakerAddress(const SettingsStore &settings) {
    return QUrl::fromUserInput(settings.Read(QStringLiteral("Maker"), QStringLiteral("WebAddress"),
                                             QStringLiteral("https://www.halvern.example/")));
}

// The address as a menu entry shows it: without what every address begins with, and no "&" a mnemonic.
inline QString MakerCaption(const SettingsStore &settings) {
    QString caption = MakerAddress(settings).toString(QUrl::RemoveScheme | QUrl::StripTrailingSlash);
    if (caption.startsWith(QStringLiteral("//"))) {
        caption.remove(0, 2);
    }
    return caption.replace(u'&', QStringLiteral("&&"));
}
